// The object report, one small JSON text a frame, and the count log, one header line a run. Both
// lie in the feature folder; a file that cannot be opened ends the run with status -1.
#pragma once

// Writes "%04d_ObjOut.txt" for the frame in hand, numbered from 1.
void ObjectReportWrite();

// Appends this run's header to HOGCount.txt. Once a run, before the first frame.
void CountLogStart();

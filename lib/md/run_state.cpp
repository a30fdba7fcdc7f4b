#include "md/run_state.h"

SimParams tSimParams;
FrameBuffers tFrameBuffers;
MdResult tMdResult;
MdPpConfig tMdPpConfig;
OutputFiles tOutputFiles;

int32_t nMdWidth;
int32_t nMdHeight;
char cPathSep = '/';
const char* pToolDir;

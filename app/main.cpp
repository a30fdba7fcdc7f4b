// MD: bit-exact simulator of the motion-detection block.
#include "app/md_sim_run.h"
#include "md/platform/platform.h"
#include "md/print.h"

int main(int argc, char** argv) {
    KeepRunningAtFileLimit();
    SetPathSep(argv[0]);
    MdSimRun(argc, argv);
    MdPrint("finish.\n");
    return 0;
}

#include "host/commands/program.h"

int main(int argc, char *argv[])
{
    return runProgram(argc, argv);
}

#include "VXSampleProgram.h"

int main(int theCount, char* theArguments[])
{
    VXSampleProgram program(theCount, theArguments);
    return static_cast<int>(program.run());
}

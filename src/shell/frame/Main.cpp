#include "shell/frame/Application.h"

int main(int argumentCount, char** arguments)
{
    return RunApplication(argumentCount, arguments);
}

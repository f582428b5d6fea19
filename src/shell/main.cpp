#include "DeskbroomApp.h"

int main(int argc, char *argv[])
{
    return DeskbroomApp(argc, argv).run();
}

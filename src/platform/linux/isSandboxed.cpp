#include "isSandboxed.h"

#include <QtGlobal>

bool isSandboxed()
{
    return !qEnvironmentVariableIsEmpty("FLATPAK_ID");
}

#include "SettingsApplicationDelegate.h"

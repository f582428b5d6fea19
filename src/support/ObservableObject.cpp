#include "ObservableObject.h"

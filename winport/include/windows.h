// The part of the Windows API that the code above this layer uses, with Windows' own names and signatures.
#pragma once

#include "guiddef.h"
#include "winbase.h"
#include "windef.h"
#include "winerror.h"
#include "wingdi.h"
#include "winnls.h"
#include "winreg.h"

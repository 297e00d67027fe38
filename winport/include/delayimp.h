// Delay-load notifications. Nothing is delay-loaded here: the loader binds a module's imports when it loads it. The
// types let code that serves the notifications compile and be tested.
#pragma once

#include "windef.h"

enum
{
    dliStartProcessing,
    dliNoteStartProcessing = dliStartProcessing,
    dliNotePreLoadLibrary,
    dliNotePreGetProcAddress,
    dliFailLoadLib,
    dliFailGetProc,
    dliNoteEndProcessing,
};

using RVA = DWORD;

// What a linker leaves in a module for each delay-loaded module: places relative to the module's first byte.
struct ImgDelayDescr
{
    DWORD grAttrs;
    RVA rvaDLLName;
    RVA rvaHmod;
    RVA rvaIAT;
    RVA rvaINT;
    RVA rvaBoundIAT;
    RVA rvaUnloadIAT;
    DWORD dwTimeStamp;
};
using PCImgDelayDescr = const ImgDelayDescr*;

struct DelayLoadProc
{
    BOOL fImportByName;
    union
    {
        LPCSTR szProcName;
        DWORD dwOrdinal;
    };
};

struct DelayLoadInfo
{
    DWORD cb; // of this structure
    PCImgDelayDescr pidd;
    FARPROC* ppfn;
    LPCSTR szDll;
    DelayLoadProc dlp;
    HMODULE hmodCur;
    FARPROC pfnCur;
    DWORD dwLastError;
};
using PDelayLoadInfo = DelayLoadInfo*;

using PfnDliHook = FARPROC(WINAPI*)(unsigned notification, PDelayLoadInfo info);

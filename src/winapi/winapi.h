// The one door to the platform: every call to the system goes through this header, by the
// system's published names. On Windows it is the system's own headers. Elsewhere it declares the
// types, constants and functions that the program uses, no more, and winapi/posix/ implements
// them as their published documentation says (learn.microsoft.com/windows/win32/api). Only what
// is particular to that implementation is commented here.
#pragma once

#ifdef _WIN32

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>  // first: the others need it

#include <mbstring.h>
#include <setupapi.h>

#else

#include <cstdint>

// How the platform's own functions are called; here as all others.
#define WINAPI

using BOOL = int;
using BYTE = unsigned char;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = unsigned int;
using SHORT = std::int16_t;
using LONG = std::int32_t;
using DWORDLONG = std::uint64_t;
using LSTATUS = LONG;
using LANGID = WORD;
using ULONG_PTR = std::uintptr_t;
using SIZE_T = std::size_t;

using HANDLE = void*;
using HLOCAL = void*;
using HINF = void*;
using HDEVINFO = void*;
using HWND = void*;
using HMODULE = void*;
using HKEY = void*;
using REGSAM = DWORD;
using FARPROC = std::intptr_t (*)();

constexpr BOOL FALSE = 0;
constexpr BOOL TRUE = 1;
constexpr DWORD MAX_PATH = 260;
// NOLINTNEXTLINE(performance-no-int-to-ptr): a number, as published
inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(static_cast<ULONG_PTR>(-1));

struct GUID {
  std::uint32_t Data1;
  std::uint16_t Data2;
  std::uint16_t Data3;
  std::uint8_t Data4[8];
};

struct FILETIME {
  DWORD dwLowDateTime;
  DWORD dwHighDateTime;
};

struct SECURITY_ATTRIBUTES {
  DWORD nLength;
  void* lpSecurityDescriptor;
  BOOL bInheritHandle;
};

// ---- Errors and message texts: error.cpp ----

constexpr DWORD ERROR_SUCCESS = 0;
constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
constexpr DWORD ERROR_PATH_NOT_FOUND = 3;
constexpr DWORD ERROR_TOO_MANY_OPEN_FILES = 4;
constexpr DWORD ERROR_ACCESS_DENIED = 5;
constexpr DWORD ERROR_INVALID_HANDLE = 6;
constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
constexpr DWORD ERROR_INVALID_DATA = 13;
constexpr DWORD ERROR_NO_MORE_FILES = 18;
constexpr DWORD ERROR_GEN_FAILURE = 31;
constexpr DWORD ERROR_NOT_SUPPORTED = 50;
constexpr DWORD ERROR_INVALID_PARAMETER = 87;
constexpr DWORD ERROR_BROKEN_PIPE = 109;
constexpr DWORD ERROR_CALL_NOT_IMPLEMENTED = 120;
constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
constexpr DWORD ERROR_INVALID_NAME = 123;
constexpr DWORD ERROR_MOD_NOT_FOUND = 126;
constexpr DWORD ERROR_PROC_NOT_FOUND = 127;
constexpr DWORD ERROR_BAD_EXE_FORMAT = 193;
constexpr DWORD ERROR_FILENAME_EXCED_RANGE = 206;
constexpr DWORD ERROR_MORE_DATA = 234;
constexpr DWORD ERROR_NO_MORE_ITEMS = 259;
constexpr DWORD ERROR_DIRECTORY = 267;
constexpr DWORD ERROR_MR_MID_NOT_FOUND = 317;
constexpr DWORD ERROR_FILE_INVALID = 1006;
constexpr DWORD ERROR_OLD_WIN_VERSION = 1150;
constexpr DWORD ERROR_INVALID_USER_BUFFER = 1784;
constexpr DWORD ERROR_RESOURCE_DATA_NOT_FOUND = 1812;
constexpr DWORD ERROR_RESOURCE_LANG_NOT_FOUND = 1815;

constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x0100;
constexpr DWORD FORMAT_MESSAGE_IGNORE_INSERTS = 0x0200;
constexpr DWORD FORMAT_MESSAGE_FROM_HMODULE = 0x0800;
constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;

constexpr UINT LPTR = 0x0040;

constexpr WORD LANG_NEUTRAL = 0x00;
constexpr WORD LANG_CHINESE = 0x04;
constexpr WORD LANG_GERMAN = 0x07;
constexpr WORD LANG_ENGLISH = 0x09;
constexpr WORD LANG_SPANISH = 0x0a;
constexpr WORD LANG_FRENCH = 0x0c;
constexpr WORD LANG_JAPANESE = 0x11;
constexpr WORD SUBLANG_DEFAULT = 0x01;
constexpr WORD SUBLANG_CHINESE_SIMPLIFIED = 0x02;
constexpr WORD SUBLANG_ENGLISH_US = 0x01;
constexpr WORD SUBLANG_FRENCH = 0x01;
constexpr WORD SUBLANG_GERMAN = 0x01;
constexpr WORD SUBLANG_SPANISH_MODERN = 0x03;

constexpr LANGID MAKELANGID(WORD primary, WORD sub) {
  return static_cast<LANGID>((sub << 10) | primary);
}

DWORD GetLastError();
void SetLastError(DWORD code);
// The system's texts are English. From a module: its exported function
// `const char* TolvanixMessageText(uint32_t number, uint32_t language)`, null when it has no such
// text in that language; language 0 asks for any.
DWORD FormatMessageA(DWORD flags, const void* source, DWORD messageId, DWORD languageId,
                     char* buffer, DWORD size, void* arguments);
HLOCAL LocalAlloc(UINT flags, SIZE_T bytes);
HLOCAL LocalFree(HLOCAL memory);

// ---- Modules and libraries: module.cpp ----

DWORD GetModuleFileNameA(HMODULE module, char* fileName, DWORD size);
// Knows "kernel32" alone, with the exports IsWow64Process and GetNativeSystemInfo.
HMODULE GetModuleHandleA(const char* moduleName);
FARPROC GetProcAddress(HMODULE module, const char* procName);
// Loads the shared object of that very name from the program's or the current directory.
HMODULE LoadLibraryA(const char* libFileName);
BOOL FreeLibrary(HMODULE module);

// ---- Files and paths: file.cpp ----
// Paths are taken with '\' and '/' alike and answered with '\'.

constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x0001;
constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x0010;
constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x0080;
constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;

struct WIN32_FIND_DATAA {
  DWORD dwFileAttributes;
  FILETIME ftCreationTime;
  FILETIME ftLastAccessTime;
  FILETIME ftLastWriteTime;
  DWORD nFileSizeHigh;
  DWORD nFileSizeLow;
  DWORD dwReserved0;
  DWORD dwReserved1;
  char cFileName[MAX_PATH];
  char cAlternateFileName[14];
};

DWORD GetCurrentDirectoryA(DWORD size, char* buffer);
BOOL SetCurrentDirectoryA(const char* path);
DWORD GetFullPathNameA(const char* fileName, DWORD size, char* buffer, char** filePart);
DWORD GetFileAttributesA(const char* fileName);
// Matches without regard to case; finds in the order of the upper-cased names. Of the find data
// only attributes, size and name are filled.
HANDLE FindFirstFileA(const char* fileName, WIN32_FIND_DATAA* findData);
BOOL FindNextFileA(HANDLE find, WIN32_FIND_DATAA* findData);
BOOL FindClose(HANDLE find);

// ---- Processes, pipes and standard handles: process.cpp ----

constexpr DWORD STD_INPUT_HANDLE = static_cast<DWORD>(-10);
constexpr DWORD STD_OUTPUT_HANDLE = static_cast<DWORD>(-11);
constexpr DWORD STD_ERROR_HANDLE = static_cast<DWORD>(-12);
constexpr DWORD STARTF_USESHOWWINDOW = 0x0001;
constexpr WORD SW_HIDE = 0;
constexpr WORD SW_SHOW = 5;
constexpr DWORD DUPLICATE_SAME_ACCESS = 0x0002;
constexpr DWORD HANDLE_FLAG_INHERIT = 0x0001;
constexpr DWORD WAIT_OBJECT_0 = 0;
constexpr DWORD WAIT_TIMEOUT = 258;
constexpr DWORD WAIT_FAILED = 0xFFFFFFFF;

struct STARTUPINFOA {
  DWORD cb;
  char* lpReserved;
  char* lpDesktop;
  char* lpTitle;
  DWORD dwX;
  DWORD dwY;
  DWORD dwXSize;
  DWORD dwYSize;
  DWORD dwXCountChars;
  DWORD dwYCountChars;
  DWORD dwFillAttribute;
  DWORD dwFlags;
  WORD wShowWindow;
  WORD cbReserved2;
  BYTE* lpReserved2;
  HANDLE hStdInput;
  HANDLE hStdOutput;
  HANDLE hStdError;
};

struct PROCESS_INFORMATION {
  HANDLE hProcess;
  HANDLE hThread;
  DWORD dwProcessId;
  DWORD dwThreadId;
};

HANDLE GetCurrentProcess();
[[noreturn]] void ExitProcess(UINT exitCode);
void GetStartupInfoA(STARTUPINFOA* startupInfo);
HANDLE GetStdHandle(DWORD stdHandle);
BOOL SetStdHandle(DWORD stdHandle, HANDLE handle);
BOOL CreatePipe(HANDLE* readPipe, HANDLE* writePipe, SECURITY_ATTRIBUTES* attributes, DWORD size);
BOOL DuplicateHandle(HANDLE sourceProcess, HANDLE source, HANDLE targetProcess, HANDLE* target,
                     DWORD desiredAccess, BOOL inheritHandle, DWORD options);
// Of pipes and standard streams only, and HANDLE_FLAG_INHERIT alone.
BOOL GetHandleInformation(HANDLE handle, DWORD* flags);
BOOL SetHandleInformation(HANDLE handle, DWORD mask, DWORD flags);
BOOL ReadFile(HANDLE file, void* buffer, DWORD bytesToRead, DWORD* bytesRead, void* overlapped);
BOOL WriteFile(HANDLE file, const void* buffer, DWORD bytesToWrite, DWORD* bytesWritten,
               void* overlapped);
BOOL PeekNamedPipe(HANDLE pipe, void* buffer, DWORD size, DWORD* bytesRead, DWORD* bytesAvailable,
                   DWORD* bytesLeft);
BOOL CloseHandle(HANDLE handle);
// Without an application name only. Of the inheritable handles the child gets the standard ones.
// A child that a signal ended has the exit code 128 plus the signal's number. One whose exit code
// somebody else in this process took has none: GetExitCodeProcess fails after its end.
BOOL CreateProcessA(const char* applicationName, char* commandLine,
                    SECURITY_ATTRIBUTES* processAttributes, SECURITY_ATTRIBUTES* threadAttributes,
                    BOOL inheritHandles, DWORD creationFlags, void* environment,
                    const char* currentDirectory, STARTUPINFOA* startupInfo,
                    PROCESS_INFORMATION* processInformation);
DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds);
BOOL GetExitCodeProcess(HANDLE process, DWORD* exitCode);

// ---- Terminals: console.cpp ----

struct COORD {
  SHORT X;
  SHORT Y;
};

struct SMALL_RECT {
  SHORT Left;
  SHORT Top;
  SHORT Right;
  SHORT Bottom;
};

struct CONSOLE_SCREEN_BUFFER_INFO {
  COORD dwSize;
  COORD dwCursorPosition;
  WORD wAttributes;
  SMALL_RECT srWindow;
  COORD dwMaximumWindowSize;
};

// Fails for what is no terminal. The size alone is filled, with the usual one for a terminal that
// does not know its own.
BOOL GetConsoleScreenBufferInfo(HANDLE console, CONSOLE_SCREEN_BUFFER_INFO* information);

// ---- Private-profile (INI) files: profile.cpp ----

DWORD GetPrivateProfileSectionNamesA(char* buffer, DWORD size, const char* fileName);
DWORD GetPrivateProfileStringA(const char* section, const char* key, const char* defaultValue,
                               char* buffer, DWORD size, const char* fileName);
// From the C runtime: compares without regard to the case of ASCII letters; text is UTF-8.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the published name
int _mbsicmp(const unsigned char* left, const unsigned char* right);

// ---- The system's version and language: version.cpp ----

struct OSVERSIONINFOA {
  DWORD dwOSVersionInfoSize;
  DWORD dwMajorVersion;
  DWORD dwMinorVersion;
  DWORD dwBuildNumber;
  DWORD dwPlatformId;
  char szCSDVersion[128];
};

struct OSVERSIONINFOEXA {
  DWORD dwOSVersionInfoSize;
  DWORD dwMajorVersion;
  DWORD dwMinorVersion;
  DWORD dwBuildNumber;
  DWORD dwPlatformId;
  char szCSDVersion[128];
  WORD wServicePackMajor;
  WORD wServicePackMinor;
  WORD wSuiteMask;
  BYTE wProductType;
  BYTE wReserved;
};

struct OSVERSIONINFOEXW {
  DWORD dwOSVersionInfoSize;
  DWORD dwMajorVersion;
  DWORD dwMinorVersion;
  DWORD dwBuildNumber;
  DWORD dwPlatformId;
  char16_t szCSDVersion[128];
  WORD wServicePackMajor;
  WORD wServicePackMinor;
  WORD wSuiteMask;
  BYTE wProductType;
  BYTE wReserved;
};

struct SYSTEM_INFO {
  WORD wProcessorArchitecture;
  WORD wReserved;
  DWORD dwPageSize;
  void* lpMinimumApplicationAddress;
  void* lpMaximumApplicationAddress;
  ULONG_PTR dwActiveProcessorMask;
  DWORD dwNumberOfProcessors;
  DWORD dwProcessorType;
  DWORD dwAllocationGranularity;
  WORD wProcessorLevel;
  WORD wProcessorRevision;
};

constexpr DWORD VER_MINORVERSION = 0x0001;
constexpr DWORD VER_MAJORVERSION = 0x0002;
constexpr BYTE VER_EQUAL = 1;
constexpr WORD PROCESSOR_ARCHITECTURE_IA64 = 6;
constexpr WORD PROCESSOR_ARCHITECTURE_AMD64 = 9;

BOOL GetVersionExA(OSVERSIONINFOA* information);
DWORDLONG VerSetConditionMask(DWORDLONG conditionMask, DWORD typeMask, BYTE condition);
BOOL VerifyVersionInfoW(OSVERSIONINFOEXW* information, DWORD typeMask, DWORDLONG conditionMask);
LANGID GetSystemDefaultLangID();

// ---- Registry, read only: registry.cpp ----

// NOLINTNEXTLINE(performance-no-int-to-ptr): a number, as published
inline const HKEY HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000002));
constexpr REGSAM KEY_QUERY_VALUE = 0x0001;
constexpr DWORD REG_SZ = 1;
constexpr DWORD REG_EXPAND_SZ = 2;
constexpr DWORD REG_BINARY = 3;
constexpr DWORD REG_DWORD = 4;
constexpr DWORD REG_MULTI_SZ = 7;

LSTATUS RegOpenKeyExA(HKEY key, const char* subKey, DWORD options, REGSAM access, HKEY* result);
LSTATUS RegQueryValueExA(HKEY key, const char* valueName, DWORD* reserved, DWORD* type, BYTE* data,
                         DWORD* size);
LSTATUS RegCloseKey(HKEY key);

// ---- Device information sets: setup_devices.cpp ----

struct SP_DEVINFO_DATA {
  DWORD cbSize;
  GUID ClassGuid;
  DWORD DevInst;
  ULONG_PTR Reserved;
};

constexpr DWORD DIGCF_PRESENT = 0x0002;
constexpr DWORD DIGCF_ALLCLASSES = 0x0004;
constexpr DWORD SPDRP_DEVICEDESC = 0x0000;
constexpr DWORD SPDRP_HARDWAREID = 0x0001;
constexpr DWORD SPDRP_DRIVER = 0x0009;
constexpr DWORD SPDRP_FRIENDLYNAME = 0x000C;
constexpr DWORD SPDRP_LOCATION_INFORMATION = 0x000D;
constexpr DWORD SPDIT_COMPATDRIVER = 0x0002;
constexpr DWORD ERROR_INVALID_MACHINENAME = 0xE0000220;

HDEVINFO SetupDiGetClassDevsA(const GUID* classGuid, const char* enumerator, HWND parent,
                              DWORD flags);
HDEVINFO SetupDiGetClassDevsExA(const GUID* classGuid, const char* enumerator, HWND parent,
                                DWORD flags, HDEVINFO existing, const char* machineName,
                                void* reserved);
HDEVINFO SetupDiCreateDeviceInfoList(const GUID* classGuid, HWND parent);
BOOL SetupDiEnumDeviceInfo(HDEVINFO set, DWORD index, SP_DEVINFO_DATA* data);
BOOL SetupDiGetDeviceRegistryPropertyA(HDEVINFO set, SP_DEVINFO_DATA* data, DWORD property,
                                       DWORD* type, BYTE* buffer, DWORD size, DWORD* requiredSize);
BOOL SetupDiDestroyDriverInfoList(HDEVINFO set, SP_DEVINFO_DATA* data, DWORD driverType);
BOOL SetupDiDestroyDeviceInfoList(HDEVINFO set);

// ---- INF files: setup_inf.cpp ----

struct INFCONTEXT {
  void* Inf;
  void* CurrentInf;
  UINT Section;
  UINT Line;
};

constexpr DWORD INF_STYLE_WIN4 = 0x0002;
constexpr DWORD ERROR_EXPECTED_SECTION_NAME = 0xE0000000;
constexpr DWORD ERROR_BAD_SECTION_NAME_LINE = 0xE0000001;
constexpr DWORD ERROR_SECTION_NAME_TOO_LONG = 0xE0000002;
constexpr DWORD ERROR_WRONG_INF_STYLE = 0xE0000100;
constexpr DWORD ERROR_LINE_NOT_FOUND = 0xE0000102;
constexpr DWORD ERROR_NO_ASSOCIATED_CLASS = 0xE0000200;

HINF SetupOpenInfFileA(const char* fileName, const char* infClass, DWORD style, UINT* errorLine);
void SetupCloseInfFile(HINF inf);
BOOL SetupFindFirstLineA(HINF inf, const char* section, const char* key, INFCONTEXT* context);
BOOL SetupFindNextLine(INFCONTEXT* contextIn, INFCONTEXT* contextOut);
DWORD SetupGetFieldCount(INFCONTEXT* context);
BOOL SetupGetStringFieldA(INFCONTEXT* context, DWORD fieldIndex, char* buffer, DWORD size,
                          DWORD* requiredSize);
BOOL SetupDiGetINFClassA(const char* infName, GUID* classGuid, char* className, DWORD classNameSize,
                         DWORD* requiredSize);
BOOL SetupDiClassGuidsFromNameA(const char* className, GUID* classGuidList, DWORD size,
                                DWORD* requiredSize);

#endif

// Preloaded into a program, makes chosen calls of one kind fail. From the environment:
//   FAULT_PROGRAM   file name of the program meant; children of another name are left alone
//   FAULT_KIND      what fails: the text that `fails` is called with
//   FAULT_FIRST, FAULT_LAST   the calls that fail, counted from 1 before the program's own code
//   FAULT_ERROR     the errno of a failed call; 0: a write takes half of its bytes
//   FAULT_REPORT    a file of two 32-bit numbers, to which calls and faults of the kind are added
// NOLINTBEGIN(bugprone-reserved-identifier, readability-inconsistent-declaration-parameter-name):
// the names are the C library's.
#define _GNU_SOURCE
#include <dirent.h>
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <stdarg.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

// glibc's own names for its allocator.
extern void* __libc_malloc(size_t size);
extern void* __libc_calloc(size_t count, size_t size);
extern void* __libc_realloc(void* memory, size_t size);

// What the C++ runtime sets aside for exceptions before anything else: without it, no lack of
// memory could be told at all.
enum { kExceptionReserve = 72704 };

static const char* faultyKind;
static unsigned first;
static unsigned last;
static int error;
struct Report {
  unsigned calls;
  unsigned faults;
};
static struct Report* report;  // null: nothing fails

static unsigned number(const char* name) {
  return (unsigned)strtoul(getenv(name), NULL, 10);
}

__attribute__((constructor)) static void prepare(void) {
  const char* const program = getenv("FAULT_PROGRAM");
  if (program == NULL || strcmp(program, program_invocation_short_name) != 0) return;
  faultyKind = getenv("FAULT_KIND");
  first = number("FAULT_FIRST");
  last = number("FAULT_LAST");
  error = (int)number("FAULT_ERROR");
  const int file = open(getenv("FAULT_REPORT"), O_RDWR | O_CLOEXEC);
  void* const shared = mmap(NULL, sizeof *report, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  close(file);
  if (shared == MAP_FAILED) abort();
  report = shared;
}

static bool fails(const char* kind) {
  if (report == NULL || strcmp(kind, faultyKind) != 0) return false;
  const unsigned call = __sync_add_and_fetch(&report->calls, 1);
  if (call < first || call > last) return false;
  __sync_add_and_fetch(&report->faults, 1);
  errno = error;
  return true;
}

static bool allocationFails(size_t size) {
  return size != kExceptionReserve && fails("allocation");
}

void* malloc(size_t size) {
  return allocationFails(size) ? NULL : __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
  return allocationFails(count * size) ? NULL : __libc_calloc(count, size);
}

void* realloc(void* memory, size_t size) {
  return allocationFails(size) ? NULL : __libc_realloc(memory, size);
}

// ---- Reading and writing ----

ssize_t read(int file, void* buffer, size_t size) {
  return fails("read") ? -1 : syscall(SYS_read, file, buffer, size);
}

ssize_t write(int file, const void* bytes, size_t size) {
  if (!fails("write")) return syscall(SYS_write, file, bytes, size);
  return error == 0 ? syscall(SYS_write, file, bytes, (size + 1) / 2) : -1;
}

ssize_t writev(int file, const struct iovec* pieces, int count) {
  const bool all = !fails("write") || (error == 0 && pieces->iov_len == 0);
  if (all) return syscall(SYS_writev, file, pieces, count);
  if (error != 0) return -1;
  return syscall(SYS_write, file, pieces->iov_base, (pieces->iov_len + 1) / 2);
}

// Streams do not come by here for their reads and writes. The flag is the one by which the C
// library remembers an error.
static bool streamFails(const char* kind, FILE* stream) {
  if (error == 0 || !fails(kind)) return false;
  stream->_flags |= 0x20;
  return true;
}

size_t fread(void* buffer, size_t size, size_t count, FILE* stream) {
  return streamFails("read", stream) ? 0 : (fread_unlocked)(buffer, size, count, stream);
}

int fgetc(FILE* stream) {
  return streamFails("read", stream) ? EOF : (getc_unlocked)(stream);
}

size_t fwrite(const void* bytes, size_t size, size_t count, FILE* stream) {
  return streamFails("write", stream) ? 0 : (fwrite_unlocked)(bytes, size, count, stream);
}

int fsync(int file) {
  return fails("sync") ? -1 : (int)syscall(SYS_fsync, file);
}

// ---- Files and folders ----

static mode_t modeOf(int flags, va_list more) {
  return (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(more, mode_t) : 0;
}

int open(const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = modeOf(flags, more);
  va_end(more);
  return fails("open") ? -1 : (int)syscall(SYS_openat, AT_FDCWD, path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = modeOf(flags, more);
  va_end(more);
  return fails("open") ? -1 : (int)syscall(SYS_openat, folder, path, flags, mode);
}

int close(int file) {
  const int result = (int)syscall(SYS_close, file);
  return fails("close") ? -1 : result;
}

int chdir(const char* path) {
  return fails("chdir") ? -1 : (int)syscall(SYS_chdir, path);
}

int rename(const char* from, const char* to) {
  return fails("rename") ? -1 : (int)syscall(SYS_rename, from, to);
}

int stat(const char* restrict path, struct stat* restrict status) {
  return fails("status") ? -1 : (int)syscall(SYS_stat, path, status);
}

int fstat(int file, struct stat* status) {
  return fails("status") ? -1 : (int)syscall(SYS_fstat, file, status);
}

int poll(struct pollfd* files, nfds_t count, int milliseconds) {
  return fails("poll") ? -1 : (int)syscall(SYS_poll, files, count, milliseconds);
}

int pipe2(int ends[2], int flags) {
  return fails("pipe") ? -1 : (int)syscall(SYS_pipe2, ends, flags);
}

// ---- What only the C library can do: each as its own function would ----

#define REAL(name) (__extension__(__typeof__(&(name))) dlsym(RTLD_NEXT, #name))

FILE* fopen(const char* path, const char* mode) {
  return fails("open") ? NULL : REAL(fopen)(path, mode);
}

FILE* fopen64(const char* path, const char* mode) {
  return fails("open") ? NULL : REAL(fopen64)(path, mode);
}

DIR* opendir(const char* path) {
  return fails("open") ? NULL : REAL(opendir)(path);
}

struct dirent* readdir(DIR* folder) {
  return fails("directory_entry") ? NULL : REAL(readdir)(folder);
}

int mkostemp(char* path, int flags) {
  return fails("open") ? -1 : REAL(mkostemp)(path, flags);
}

void* dlopen(const char* path, int mode) {
  return fails("library") ? NULL : REAL(dlopen)(path, mode);
}

int posix_spawn(pid_t* restrict child, const char* restrict path,
                const posix_spawn_file_actions_t* restrict actions,
                const posix_spawnattr_t* restrict attributes, char* const argv[restrict],
                char* const environment[restrict]) {
  if (fails("spawn")) return error;
  return REAL(posix_spawn)(child, path, actions, attributes, argv, environment);
}
// NOLINTEND(bugprone-reserved-identifier, readability-inconsistent-declaration-parameter-name)

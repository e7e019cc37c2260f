// Preloaded into a program, makes chosen calls of one kind fail. From the environment:
//   FAULT_PROGRAM   file name of the program meant; children of another name are left alone
//   FAULT_KIND      what fails: the text that `fails` is called with
//   FAULT_FIRST, FAULT_LAST   the calls that fail, counted from 1 before the program's own code
//   FAULT_ERROR     the errno of a failed call; 0: a write takes half of its bytes
//   FAULT_REPORT    a file of two 32-bit numbers, to which calls and faults of the kind are added
// NOLINTBEGIN(bugprone-reserved-identifier, readability-inconsistent-declaration-parameter-name,
// bugprone-macro-parentheses): the names are the C library's; a type takes no parentheses.
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
static unsigned* report;  // calls, faults; null: nothing fails

static unsigned number(const char* name) {
  return (unsigned)strtoul(getenv(name), NULL, 10);
}

// The C library's own function, which this one replaces.
#define REAL(name) (__extension__(__typeof__(&(name))) dlsym(RTLD_NEXT, #name))

__attribute__((constructor)) static void prepare(void) {
  const char* const program = getenv("FAULT_PROGRAM");
  if (program == NULL || strcmp(program, program_invocation_short_name) != 0) return;
  faultyKind = getenv("FAULT_KIND");
  first = number("FAULT_FIRST");
  last = number("FAULT_LAST");
  error = (int)number("FAULT_ERROR");
  const int file = open(getenv("FAULT_REPORT"), O_RDWR | O_CLOEXEC);
  void* const shared = mmap(NULL, 2 * sizeof *report, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  close(file);
  if (shared == MAP_FAILED) abort();
  report = shared;
}

static bool fails(const char* kind) {
  if (report == NULL || strcmp(kind, faultyKind) != 0) return false;
  const unsigned call = __sync_add_and_fetch(&report[0], 1);
  if (call < first || call > last) return false;
  __sync_add_and_fetch(&report[1], 1);
  errno = error;
  return true;
}

static bool allocationFails(size_t size) {
  return size != kExceptionReserve && fails("allocation");
}

// Streams do not come by `read` and `write` here. The flag is the one by which the C library
// remembers an error.
static bool streamFails(const char* kind, FILE* stream) {
  if (error == 0 || !fails(kind)) return false;
  stream->_flags |= 0x20;
  return true;
}

// A function that fails when `fault` holds, and else does what `real` does.
#define FAULTY(type, name, parameters, fault, failure, real) \
  type name parameters {                                     \
    return (fault) ? (failure) : real;                       \
  }

// clang-format off: a function a line.
FAULTY(void*, malloc, (size_t size), allocationFails(size), NULL, __libc_malloc(size))
FAULTY(void*, calloc, (size_t n, size_t size), allocationFails(n* size), NULL,
       __libc_calloc(n, size))
FAULTY(void*, realloc, (void* old, size_t size), allocationFails(size), NULL,
       __libc_realloc(old, size))

FAULTY(ssize_t, read, (int file, void* to, size_t size), fails("read"), -1,
       REAL(read)(file, to, size))
FAULTY(size_t, fread, (void* to, size_t size, size_t n, FILE* in), streamFails("read", in), 0,
       REAL(fread)(to, size, n, in))
FAULTY(int, fgetc, (FILE * in), streamFails("read", in), EOF, REAL(fgetc)(in))
FAULTY(size_t, fwrite, (const void* from, size_t size, size_t n, FILE* out),
       streamFails("write", out), 0, REAL(fwrite)(from, size, n, out))
FAULTY(int, fsync, (int file), fails("sync"), -1, REAL(fsync)(file))

FAULTY(FILE*, fopen, (const char* path, const char* mode), fails("open"), NULL,
       REAL(fopen)(path, mode))
FAULTY(FILE*, fopen64, (const char* path, const char* mode), fails("open"), NULL,
       REAL(fopen64)(path, mode))
FAULTY(DIR*, opendir, (const char* path), fails("open"), NULL, REAL(opendir)(path))
FAULTY(struct dirent*, readdir, (DIR * folder), fails("directory_entry"), NULL,
       REAL(readdir)(folder))
FAULTY(int, mkostemp, (char* path, int flags), fails("open"), -1, REAL(mkostemp)(path, flags))
FAULTY(int, close, (int file), REAL(close)(file) != 0 || fails("close"), -1, 0)
FAULTY(int, chdir, (const char* path), fails("chdir"), -1, REAL(chdir)(path))
FAULTY(int, rename, (const char* from, const char* to), fails("rename"), -1, REAL(rename)(from, to))
FAULTY(int, stat, (const char* restrict path, struct stat* restrict to), fails("status"), -1,
       REAL(stat)(path, to))
FAULTY(int, fstat, (int file, struct stat* to), fails("status"), -1, REAL(fstat)(file, to))
FAULTY(int, poll, (struct pollfd * files, nfds_t n, int time), fails("poll"), -1,
       REAL(poll)(files, n, time))
FAULTY(int, pipe2, (int ends[2], int flags), fails("pipe"), -1, REAL(pipe2)(ends, flags))
FAULTY(void*, dlopen, (const char* path, int mode), fails("library"), NULL,
       REAL(dlopen)(path, mode))
FAULTY(int, posix_spawn,
       (pid_t* restrict child, const char* restrict path,
        const posix_spawn_file_actions_t* restrict actions,
        const posix_spawnattr_t* restrict attributes, char* const argv[restrict],
        char* const environment[restrict]),
       fails("spawn"), error,
       REAL(posix_spawn)(child, path, actions, attributes, argv, environment))

// The mode of a new file, where there is one.
#define OPENING(name, parameters, ...)                                                   \
  int name parameters {                                                                  \
    va_list more;                                                                        \
    va_start(more, flags);                                                               \
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(more, mode_t) : 0; \
    va_end(more);                                                                        \
    return fails("open") ? -1 : REAL(name)(__VA_ARGS__, flags, mode);                    \
  }
OPENING(open, (const char* path, int flags, ...), path)
OPENING(openat, (int folder, const char* path, int flags, ...), folder, path)
// clang-format on

ssize_t write(int file, const void* bytes, size_t size) {
  if (!fails("write")) return REAL(write)(file, bytes, size);
  return error == 0 ? REAL(write)(file, bytes, (size + 1) / 2) : -1;
}

ssize_t writev(int file, const struct iovec* pieces, int count) {
  if (!fails("write") || (error == 0 && pieces->iov_len == 0)) {
    return REAL(writev)(file, pieces, count);
  }
  return error == 0 ? REAL(write)(file, pieces->iov_base, (pieces->iov_len + 1) / 2) : -1;
}
// NOLINTEND(bugprone-reserved-identifier, readability-inconsistent-declaration-parameter-name,
// bugprone-macro-parentheses)

// Preloaded into a program, makes chosen calls of one kind fail. From the environment:
//   FAULT_PROGRAM   file name of the program meant; children of another name are left alone
//   FAULT_KIND      what fails: the text that `fails` is called with
//   FAULT_FIRST, FAULT_LAST   the calls that fail, counted from 1 before the program's own code
//   FAULT_ERROR     the errno of a failed call; 0: it takes or gives half of its bytes
//   FAULT_REPORT    a file of two 32-bit numbers, to which calls and faults of the kind are added
// NOLINTBEGIN(bugprone-reserved-identifier, readability-inconsistent-declaration-parameter-name,
// bugprone-macro-parentheses, performance-no-int-to-ptr): the names are the C library's, and what
// is handed over is of any type.
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <stdbool.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/uio.h>
#include <unistd.h>

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

// Streams do not come by `read` and `write` here. The flag is the one by which the C library
// remembers an error.
static bool streamFails(const char* kind, long stream) {
  if (error == 0 || !fails(kind)) return false;
  ((FILE*)stream)->_flags |= 0x20;
  return true;
}

// The C library's own function, which this one replaces.
#define REAL(name) (__extension__(__typeof__(&(name))) dlsym(RTLD_NEXT, #name))

// A function of the C library that fails when `fault` holds, and else does what `real` does. On
// Linux of 64 bits a parameter or result of any of these types is in a register of its own, so one
// signature hands over all; `a` to `f` are the parameters.
#define PARAMETERS (long a, long b, long c, long d, long e, long f)
typedef long Function PARAMETERS;
#define FAULTY_BY(name, fault, failure, real)              \
  extern Function faulty_##name __asm__(#name);            \
  long faulty_##name PARAMETERS {                          \
    return (fault) ? (failure) : (real)(a, b, c, d, e, f); \
  }
#define FAULTY(name, fault, failure) \
  FAULTY_BY(name, fault, failure, __extension__(Function*) dlsym(RTLD_NEXT, #name))

// glibc's own names for its allocator.
extern Function __libc_malloc, __libc_calloc, __libc_realloc;
FAULTY_BY(malloc, a != kExceptionReserve && fails("allocation"), 0, __libc_malloc)
FAULTY_BY(calloc, fails("allocation"), 0, __libc_calloc)
FAULTY_BY(realloc, fails("allocation"), 0, __libc_realloc)

FAULTY(fread, streamFails("read", d), 0)
FAULTY(fgetc, streamFails("read", a), EOF)
FAULTY(fwrite, streamFails("write", d), 0)
FAULTY(fsync, fails("sync"), -1)
FAULTY(open, fails("open"), -1)
FAULTY(openat, fails("open"), -1)
FAULTY(fopen, fails("open"), 0)
FAULTY(fopen64, fails("open"), 0)
FAULTY(opendir, fails("open"), 0)
FAULTY(mkostemp, fails("open"), -1)
FAULTY(readdir, fails("directory_entry"), 0)
FAULTY(chdir, fails("chdir"), -1)
FAULTY(getcwd, fails("getcwd"), 0)
FAULTY(mmap, fails("mapping"), -1)
FAULTY(rename, fails("rename"), -1)
FAULTY(stat, fails("status"), -1)
FAULTY(fstat, fails("status"), -1)
FAULTY(poll, fails("poll"), -1)
FAULTY(pipe2, fails("pipe"), -1)
FAULTY(dlopen, fails("library"), 0)
FAULTY(waitpid, fails("wait"), -1)
FAULTY(posix_spawn, fails("spawn"), error)

int close(int file) {
  return REAL(close)(file) != 0 || fails("close") ? -1 : 0;
}

ssize_t read(int file, void* bytes, size_t size) {
  if (!fails("read")) return REAL(read)(file, bytes, size);
  return error == 0 ? REAL(read)(file, bytes, (size + 1) / 2) : -1;
}

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
// bugprone-macro-parentheses, performance-no-int-to-ptr)

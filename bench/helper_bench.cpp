// How long a helper program takes to run through ExecCmd, beside the bare system calls. The program
// is the first argument: helper_bench PROGRAM [benchmark's options]
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "install/ExecCmd.h"

namespace {

char* program = nullptr;

void ExecCmd(benchmark::State& state) {
  while (state.KeepRunning()) {
    char output[1000] = "";
    DWORD exitCode = 1;
    if (tolvanix::ExecCmd("/", program, 0, output, sizeof output, exitCode, 60) != 0 ||
        exitCode != 0) {
      state.SkipWithError("the program failed");
    }
  }
}
BENCHMARK(ExecCmd)->UseRealTime()->Unit(benchmark::kMicrosecond);

void PosixSpawn(benchmark::State& state) {
  while (state.KeepRunning()) {
    char* arguments[] = {program, nullptr};
    pid_t process = 0;
    int status = 1;
    if (posix_spawn(&process, program, nullptr, nullptr, arguments, environ) != 0 ||
        waitpid(process, &status, 0) != process || status != 0) {
      state.SkipWithError("the program failed");
    }
  }
}
BENCHMARK(PosixSpawn)->UseRealTime()->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char* argv[]) {
  if (argc < 2) return 2;
  program = argv[1];
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

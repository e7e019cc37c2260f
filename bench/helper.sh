# Part of run.sh: running a helper program.
benchmark helper_bench "$work/nothing"
row 'helper run : posix_spawn and wait' \
  "$(ratio "$(benchmark_median ExecCmd/real_time)" "$(benchmark_median PosixSpawn/real_time)")" 1.3

# Part of run.sh: what starting costs.
echo 'int main(void) { return 0; }' >"$work/nothing.c"
cc -O2 -static -o "$work/nothing" "$work/nothing.c"
cp "$bin/tolvanix" "$work"
runs=500
row 'start (-v) : a static C program that does nothing' \
  "$(against "$work/tolvanix -v" "$work/nothing")" 1.3
runs=50

# Part of run.sh: large inputs; time grows as they do.

# lines <folder> <count> <printf format of a line>: after the head of an INF file.
lines() {
  mkdir "$work/$1"
  cp "$bin/tolvanix" "$work/$1"
  awk -v count="$2" -v line="$3" 'BEGIN {
    printf "[Version]\nSignature=\"$Windows NT$\"\nClass=Net\n" \
      "ClassGuid={4d36e972-e325-11ce-bfc1-08002be10318}\n[Manufacturer]\nMaker=Models\n" \
      "[Models]\nCard=Install"
    for (i = 0; i < count; ++i) printf line, i
    printf "\n"
  }' >"$work/$1/net.inf"
}

runs=10
lines ids 2400000 ',PCI\\\\VEN_1DE5&DEV_%X'
lines fewer_ids 600000 ',PCI\\\\VEN_1DE5&DEV_%X'
lines sections 2000000 '\n[Section%d]\nKey=1'
lines fewer_sections 500000 '\n[Section%d]\nKey=1'
row 'driver, one line with 2,400,000 IDs : 600,000' \
  "$(against "$(search ids)" "$(search fewer_ids)")" 4.6
row 'driver, one file with 2,000,000 sections : 500,000' \
  "$(against "$(search sections)" "$(search fewer_sections)")" 4.6

# strays <folder> <count>: that many closing tags before the device of a validation document, which
# is found again after each.
strays() {
  mkdir "$work/$1"
  cp "$bin/tolvanix" "$work/$1"
  cp "$bin/replay_kivvalid.dll" "$work/$1/kivvalid.dll"
  echo '<P/>' >"$work/$1/package.xml"
  awk -v count="$2" 'BEGIN {
    printf "<V>"
    for (i = 0; i < count; ++i) printf "</Device>"
    printf "<Device vendorID=\"1DE4\"></Device></V>"
  }' >"$work/$1/answer.txt"
}
strays strays 80000
strays fewer_strays 20000
row 'update, 80,000 stray tags in the validation document : 20,000' \
  "$(against "$(update strays)" "$(update fewer_strays)")" 4.6

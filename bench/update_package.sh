# Part of run.sh: updates (-u -c) of large packages.

# package <name> <devices> <distinct IDs> <INF files> [own]: each file lists 50 IDs, the same, or
# with "own" the ID of one device that no other file lists.
package() {
  mkdir "$work/$1"
  cp "$bin/tolvanix" "$work/$1"
  cp "$bin/replay_kivvalid.dll" "$work/$1/kivvalid.dll"
  echo '<P/>' >"$work/$1/package.xml"
  awk -v folder="$work/$1" -v devices="$2" -v ids="$3" -v files="$4" \
    -v own="${5:+256}" 'BEGIN {
    out = folder "/answer.txt"
    printf "<V>" >out
    for (i = 0; i < devices; ++i)
      printf "<Device bus=\"1\" device=\"2\" function=\"3\" vendorID=\"1DE4\" deviceID=\"%04X\" " \
        "subDeviceID=\"0001\" subVendorID=\"1DE4\" display=\"Card\"><Application " \
        "componentType=\"DRVR\" version=\"1.0\" display=\"Card Driver\"><Package version=\"2.0\"/>" \
        "</Application></Device>", i % ids >out
    printf "</V>" >out
    for (f = 0; f < files; ++f) {
      out = sprintf("%s/net%05d.inf", folder, f)
      printf "[Version]\nSignature=\"$Windows NT$\"\nClass=Net\n" \
        "ClassGuid={4d36e972-e325-11ce-bfc1-08002be10318}\n[Manufacturer]\nMaker=Models\n" \
        "[Models]\n" >out
      for (i = 0; i < 50; ++i)
        printf "%%Card%%=Install,PCI\\VEN_1DE4&DEV_%04X&SUBSYS_00011DE4\n", \
          own && i == 0 ? f : own * (f + 1) + i >out
      printf "[Strings]\nCard=\"Card\"\n" >out
      close(out)
    }
  }'
}

update() { echo "$work/$1/tolvanix -u -c -o $work/$1/out.xml"; }

# The sample computer has none of the devices, so that the search goes through all files.
package base 1000 1000 20
package devices 4000 4000 20
package files 1000 1000 80
row 'update (-u -c), 20 INF files: 4,000 devices : 1,000' \
  "$(against "$(update devices)" "$(update base)")" 4.8
row 'update, 1,000 devices: 80 INF files : 20' "$(against "$(update files)" "$(update base)")" 4.8

# The document apart: what the devices cost when there is no INF file to search.
package one 1 1 20
package same 10000 1 20
package document 10000 1 0
alone=$(awk -v one="$(median "$(update one)")" -v document="$(median "$(update document)")" \
  'BEGIN { print one + document }')
row 'update, 10,000 times the same device : one device and the document' \
  "$(ratio "$(median "$(update same)")" "$alone")" 2

# A whole run on a computer of 50 devices, 20 of which have a driver in the package.
package whole 20 20 20 own
awk 'BEGIN {
  printf "Windows Registry Editor Version 5.00\n"
  for (i = 0; i < 50; ++i) {
    model = sprintf("VEN_1DE4&DEV_%04X&SUBSYS_00011DE4", i)
    printf "\n[HKEY_LOCAL_MACHINE\\SYSTEM\\CurrentControlSet\\Enum\\PCI\\%s\\0]\n", model
    printf "\"HardwareID\"=\"PCI\\\\%s\"\n\"DeviceDesc\"=\"Card\"\n", model
  }
}' >"$work/computer.reg"
export TOLVANIX_MACHINE="$work/computer.reg"
parts=$(median "$work/whole/tolvanix -i -o $work/whole/out.xml")
for device in $(seq 0 19); do
  id=$(printf 'PCI\\VEN_1DE4&DEV_%04X&SUBSYS_00011DE4' "$device")
  part=$(median "$work/whole/tolvanix -uhid -w '$id' -c -o $work/whole/out.xml")
  parts=$(awk -v parts="$parts" -v part="$part" 'BEGIN { print parts + part }')
done
row 'update, 50 devices and 20 INF files : -i and 20 -uhid -c' \
  "$(ratio "$(median "$(update whole)")" "$parts")" 1

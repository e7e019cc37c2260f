# Part of run.sh: documents built and read.
benchmark document_bench
compare() { row "$1" "$(ratio "$(benchmark_median "$2")" "$(benchmark_median "$3")")" "$4"; }
compare 'document of 4,096 devices, built : pugixml, saved' Build/4096 PugixmlSave/4096 4
compare 'document of 4,096 devices, read : pugixml, loaded' Read/4096 PugixmlLoad/4096 4
compare 'document, built, 65,536 devices : 4,096' Build/65536 Build/4096 25
compare 'document, read, 65,536 devices : 4,096' Read/65536 Read/4096 25

# The version that the program and the files of the sample package carry.
set(TOLVANIX_VERSION 7.3.105.105)

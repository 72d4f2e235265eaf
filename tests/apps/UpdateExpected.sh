#!/bin/sh
# usage: UpdateExpected.sh BUILD
# Writes expected/, and what stands beside the scripts, anew from what the program of a build does now. Read the
# differences before you commit them.
GUITREE_UPDATE_EXPECTED=1 ctest --test-dir "$1" -R '^GuitreeShow_'

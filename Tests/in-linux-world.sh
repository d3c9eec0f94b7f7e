#!/usr/bin/env bash
# Tests/in-linux-world.sh PROGRAMS COMMAND...: runs the command on a kernel with the three monitors that
# Tests/EndToEnd/Linux expects, which a program of the folder plays.
programs=$1
shift
exec "$programs"/ddc-bus-host \
  --monitor HDMI-A-1,bus=5,vendor=BRV,model=0x1001,serial=11,label=Left \
  --monitor DP-1,bus=6,own=1,vendor=BRV,model=0x1002,serial=22,label=Middle,maximum=255,level=255 \
  --monitor DP-2,vendor=XYZ,model=0x3003,serial=33,label=Right \
  --keyboard event3,c006f=225,c0070=224 -- "$@"

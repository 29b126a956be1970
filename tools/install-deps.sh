#!/bin/sh
# SPDX-License-Identifier: MIT
# Copyright (c) the Dipscope developers
# Installs the Debian/Ubuntu packages the build needs, when any is missing.
set -eu
# poppler-utils: the printing tests look at a printed PDF page with pdftoppm.
packages="cmake g++ make pkg-config qt6-base-dev qt6-svg-dev liberfa-dev libcfitsio-dev fonts-dejavu-core poppler-utils"
missing=""
for p in $packages; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        missing="$missing $p"
    fi
done
[ -z "$missing" ] && exit 0
if [ "$(id -u)" = 0 ]; then
    apt-get update -qq
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq $missing
elif command -v sudo >/dev/null 2>&1 && sudo -n true 2>/dev/null; then
    sudo apt-get update -qq
    sudo DEBIAN_FRONTEND=noninteractive apt-get install -y -qq $missing
else
    echo "Missing build packages. Run: sudo apt-get install -y$missing"
    exit 1
fi

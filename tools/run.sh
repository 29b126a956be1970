#!/bin/sh
# SPDX-License-Identifier: MIT
# Copyright (c) the Dipscope developers
# Starts dipscope with the example light curve loaded.
build=${1:-build/release}
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ]; then
    echo "No display to show the window on; measure from the console instead: $build/src/app/dipscope-measure examples/single-minimum.csv --parabola 0.49,0.535 --kwee 0.46,0.565 --sliding"
    exit 0
fi
exec "$build/src/app/dipscope" examples/single-minimum.csv

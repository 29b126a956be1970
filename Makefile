# SPDX-License-Identifier: MIT
# Copyright (c) the Dipscope developers
JOBS := $(shell nproc 2>/dev/null || echo 2)
RELEASE := build/release
ASAN := build/asan
TSAN := build/tsan

.PHONY: run test deps build build-asan build-tsan bench docs clean

deps:
	@sh tools/install-deps.sh

build: deps
	cmake -S . -B $(RELEASE) -DCMAKE_BUILD_TYPE=Release
	cmake --build $(RELEASE) -j $(JOBS)

build-asan: deps
	cmake -S . -B $(ASAN) -DCMAKE_BUILD_TYPE=Debug -DDIPSCOPE_SANITIZE=ON
	cmake --build $(ASAN) -j $(JOBS)

# Only what the tests labelled "threads" need, under ThreadSanitizer.
build-tsan: deps
	cmake -S . -B $(TSAN) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DDIPSCOPE_TSAN=ON
	cmake --build $(TSAN) -j $(JOBS) --target tst_threads tst_bootstrap tst_methodbootstrap tst_measure_errors

run: build
	@sh tools/run.sh $(RELEASE)

# Every test in the Release build, then the whole suite again under AddressSanitizer and
# UndefinedBehaviorSanitizer, then the methods in threads under ThreadSanitizer.
test: build build-asan build-tsan
	cd $(RELEASE) && ctest --output-on-failure -j $(JOBS)
	cd $(ASAN) && ctest --output-on-failure -j $(JOBS)
	cd $(TSAN) && ctest --output-on-failure -L threads

bench: build
	@for b in $(RELEASE)/bench/bench_*; do [ -x "$$b" ] && QT_QPA_PLATFORM=offscreen "$$b"; done; true

docs: build
	QT_QPA_PLATFORM=offscreen $(RELEASE)/src/app/dipscope-screenshot docs/main-window.png --windows docs
	$(RELEASE)/src/app/dipscope-batch examples/long-light-curve.csv --ephemeris 2459500.31250,0.547231 \
		--secondary --plot docs/oc-diagram.png --output /dev/null

clean:
	rm -rf build

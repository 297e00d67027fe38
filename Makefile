# The short front of CMakePresets.json: one command a habit, the same here and in CI. `make help` lists them.
SHELL := /bin/bash
.DEFAULT_GOAL := build
.SUFFIXES:
MAKEFLAGS += --no-print-directory

.PHONY: build help demo test check-asan check-tsan check-windows check-style check-floors format \
        fuzz soak bench coverage package clean

build: ## build the native program and modules into build/release/bin (what `make` alone does)
	@scripts/setup.sh base
	@scripts/build.sh linux-release

help: ## this list
	@awk -F ':.*## ' '/^[a-z-]+:.*## / { printf "  make %-14s %s\n", $$1, $$2 }' Makefile

demo: build ## a devmode becomes a print ticket and comes back, with a scratch printer
	@scripts/demo.sh

test: build ## every test, natively
	@scripts/run-tests.sh build/release

check-asan: ## the tests under clang's address and undefined behaviour sanitizers
	@scripts/setup.sh base sanitizers
	@scripts/build.sh linux-asan
	@scripts/run-tests.sh build/asan

check-tsan: ## the tests under clang's thread sanitizer
	@scripts/setup.sh base sanitizers
	@scripts/build.sh linux-tsan
	@scripts/run-tests.sh build/tsan

check-windows: ## cross-build the .dll files and run the same tests under Wine
	@scripts/setup.sh base windows
	@scripts/build.sh windows-release
	@scripts/check-windows.sh

check-style: ## format, floors of the includes, clang-tidy
	@scripts/setup.sh base sanitizers style
	@scripts/check-style.sh

check-floors: ## only the floors: what may include what
	@scripts/check-floors.sh

format: ## bring every C++ file into the format of .clang-format
	@scripts/setup.sh style
	@git ls-files -z -- '*.h' '*.cpp' | xargs -0 -r clang-format -i

fuzz: ## run each fuzz target for FUZZ_SECONDS (60) seconds
	@scripts/setup.sh base sanitizers
	@scripts/fuzz.sh

soak: build ## SOAK_OPERATIONS (100000) of the provider in one process, which must hold no more at the end
	@cd build/release/bin && TVPT_SOAK_OPERATIONS=$${SOAK_OPERATIONS:-100000} ./tvpt_tests --gtest_filter='Soak.*'

bench: build ## run the benchmarks
	@scripts/bench.sh

coverage: ## which lines the tests reach: build/coverage/report/index.html
	@scripts/setup.sh base coverage
	@scripts/coverage.sh

package: ## driver package folders for Linux and Windows under build/package
	@scripts/setup.sh base windows
	@scripts/build.sh linux-release
	@scripts/build.sh windows-release
	@scripts/package.sh

clean: ## remove everything that was built
	rm -rf build

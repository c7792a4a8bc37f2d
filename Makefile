# The front door: every target installs what it needs, builds and runs. See "make help".

SHELL := bash
.SHELLFLAGS := -eu -o pipefail -c
.DEFAULT_GOAL := help
.PHONY: help demo test bench instructions instructions-baseline vectors install coverage fuzz ci tidy format format-check clean

PACKAGES := g++ cmake ninja-build libgtest-dev locales
INSTALL := @./cmake/install-packages.sh
BUILD := build/gcc-release
# More for the configuration, such as -DQUILL_WARNINGS_AS_ERRORS=ON.
CONFIGURE_FLAGS ?=
# More for the benchmarks, such as --benchmark_filter=render, or --benchmark_min_time=0.001 to be quick.
BENCH_FLAGS ?=
# Where "make install" puts the library (below DESTDIR, when that is set), and whether as a shared one.
PREFIX ?= /usr/local
SHARED ?=
INSTALL_PRESET = $(if $(SHARED),gcc-shared,gcc-release)
# How long each fuzz target runs.
FUZZ_SECONDS ?= 20
SOURCES = $(shell find Framework Platform Tests Examples Benchmarks Fuzz Vectors -name '*.h' -o -name '*.cpp')

help:
	@echo "make demo          a timecode field to type in; without a terminal, a few entries and its answers"
	@echo "make test          builds the library, the tests and the examples, and runs all tests"
	@echo "make bench         runs the benchmarks of Docs/performance.md and prints their table"
	@echo "make instructions  counts the instructions of each operation and compares them with Benchmarks/instructions.txt;"
	@echo "                   make instructions-baseline writes that file"
	@echo "make vectors       writes the test vectors of Docs/vectors.md into Vectors/, and long ones into build/vectors"
	@echo "make install       installs the library below PREFIX (/usr/local) and DESTDIR; SHARED=1 for a shared one"
	@echo "make coverage      runs the tests and says which lines of the library they reach"
	@echo "make fuzz          feeds made-up entries and archives to the library for FUZZ_SECONDS (20) a target"
	@echo "make ci            every check: all presets, sanitizers, lint and format"
	@echo "make tidy          clang-tidy over Framework/ and Platform/"
	@echo "make format        clang-format over all sources; make format-check only looks"
	@echo "make clean         removes build/"
	@echo "Each first installs the Debian packages that it misses, as root or through sudo without a password."

demo:
	$(INSTALL) $(PACKAGES)
	cmake --preset gcc-release $(CONFIGURE_FLAGS)
	cmake --build --preset gcc-release --target TimecodeField
	@if [ -t 0 ] && [ -t 1 ]; then $(BUILD)/Examples/TimecodeField; \
	else printf '1234\n+45\n-1:00\nabc\n' \
	  | $(BUILD)/Examples/TimecodeField --mode 29.97df --interpretation discarding; fi

test:
	$(INSTALL) $(PACKAGES)
	cmake --preset gcc-release $(CONFIGURE_FLAGS)
	cmake --build --preset gcc-release
	ctest --preset gcc-release

BENCHMARKS := $(BUILD)/Benchmarks/QuillBenchmarks
define BUILD_BENCHMARKS
$(INSTALL) $(PACKAGES) libbenchmark-dev pkgconf libavutil-dev libgstreamer-plugins-base1.0-dev valgrind
cmake --preset gcc-release -DQUILL_BENCHMARKS=ON $(CONFIGURE_FLAGS)
cmake --build --preset gcc-release --target QuillBenchmarks
endef

bench:
	$(BUILD_BENCHMARKS)
	$(BENCHMARKS) $(BENCH_FLAGS)

instructions:
	$(BUILD_BENCHMARKS)
	Benchmarks/instructions.sh $(BENCHMARKS) Benchmarks/instructions.txt

instructions-baseline:
	$(BUILD_BENCHMARKS)
	Benchmarks/instructions.sh $(BENCHMARKS) Benchmarks/instructions.txt update

vectors:
	$(INSTALL) $(PACKAGES)
	cmake --preset gcc-release $(CONFIGURE_FLAGS)
	cmake --build --preset gcc-release --target MakeVectors
	$(BUILD)/Vectors/MakeVectors Vectors
	$(BUILD)/Vectors/MakeVectors --all build/vectors

install:
	$(INSTALL) $(filter-out libgtest-dev locales,$(PACKAGES))
	cmake --preset $(INSTALL_PRESET) -DQUILL_TESTS=OFF -DQUILL_EXAMPLES=OFF -B build/install-$(INSTALL_PRESET) \
	  -DCMAKE_INSTALL_PREFIX=$(PREFIX) $(CONFIGURE_FLAGS)
	cmake --build build/install-$(INSTALL_PRESET)
	cmake --install build/install-$(INSTALL_PRESET)

# Fails below 95 % of the lines of Framework/, or below all of them in the arithmetic that needs no object.
COVERED := build/gcc-coverage
ARITHMETIC := SMPTEArithmetic|AudioFrameSequence|MusicalGrid|FilmFootage|TimecodeModeTable|QKTimecodeUtilities
coverage:
	$(INSTALL) $(PACKAGES) gcovr
	cmake --preset gcc-coverage $(CONFIGURE_FLAGS)
	cmake --build --preset gcc-coverage
	find $(COVERED) -name '*.gcda' -delete
	ctest --preset gcc-coverage
	gcovr --root . --object-directory $(COVERED) --filter 'Framework/' --fail-under-line 95 $(COVERED)
	gcovr --root . --object-directory $(COVERED) --filter 'Framework/($(ARITHMETIC))\.' --fail-under-line 100 $(COVERED)

fuzz:
	$(INSTALL) $(PACKAGES) clang libclang-rt-dev
	cmake --preset clang-fuzz -DQUILL_FUZZ_FLAGS=-max_total_time=$(FUZZ_SECONDS) $(CONFIGURE_FLAGS)
	cmake --build --preset clang-fuzz
	ctest --preset clang-fuzz

ci:
	.ci/run

# The last command leaves out the counts of what was found in the headers of others.
tidy:
	$(INSTALL) $(PACKAGES) clang clang-tidy
	cmake --preset clang-release $(CONFIGURE_FLAGS)
	@find Framework Platform -name '*.cpp' | sort | xargs -n 1 -P 2 clang-tidy --quiet -p build/clang-release 2>&1 \
	  | sed -E '/^[0-9]+ warnings? generated\.$$/d'

format:
	$(INSTALL) clang-format
	clang-format -i $(SOURCES)

format-check:
	$(INSTALL) clang-format
	@for file in $(SOURCES); do clang-format "$$file" | diff -u "$$file" - || bad=1; done; [ -z "$${bad-}" ]

clean:
	rm -rf build

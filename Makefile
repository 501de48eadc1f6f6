# The commands a developer and CI use. `make run` and `make test` install what is missing first.
BUILD ?= build
JOBS ?= $(shell nproc)
# Worktrees share one compiler cache.
export CCACHE_BASEDIR := $(CURDIR)
CMAKE_FLAGS ?=

# `make test SANITIZE=1` also runs the core tests built with the address and undefined-behaviour
# sanitizers, in $(BUILD)-asan.
SANITIZE ?=
# ASan and UBSan stop at the first error and say where.
export ASAN_OPTIONS ?= detect_leaks=1:detect_stack_use_after_return=1
export UBSAN_OPTIONS ?= print_stacktrace=1:halt_on_error=1
# Leaks of libraries, not Orwick's, that LeakSanitizer passes over (each one says why).
export LSAN_OPTIONS ?= suppressions=$(CURDIR)/tests/lsan-suppressions.txt:print_suppressions=0

.PHONY: deps build run test sanitize bench fuzz install clean

deps:
	@scripts/install-deps $(DEPS_FLAGS)

$(BUILD)/build.ninja:
	cmake -S . -B $(BUILD) -G Ninja $(CMAKE_FLAGS)

build: deps $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS)

run: build
	$(BUILD)/orwick $(ARGS)

test: DEPS_FLAGS = --with-checks
test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS) --output-junit junit.xml
ifeq ($(SANITIZE),1)
	$(MAKE) --no-print-directory sanitize
endif

# The core tests alone, sanitized: a separate build folder, the interface's tests left out.
sanitize: DEPS_FLAGS = --with-checks
sanitize: deps
	cmake -S . -B $(BUILD)-asan -G Ninja -DORWICK_SANITIZE=ON $(CMAKE_FLAGS) >/dev/null
	cmake --build $(BUILD)-asan -j $(JOBS) --target orwick_core_tests
	cd $(BUILD)-asan && ctest --output-on-failure -j $(JOBS) -E '_NOT_BUILT' --output-junit junit.xml

bench: DEPS_FLAGS = --with-bench
bench: deps
	cmake -S . -B $(BUILD)-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DORWICK_BENCH=ON -DORWICK_TESTS=OFF
	cmake --build $(BUILD)-bench -j $(JOBS)
	bench/run-all $(BUILD)-bench

# Every fuzz target, a minute each (FUZZ_SECONDS=…).
fuzz: DEPS_FLAGS = --with-checks
fuzz: deps
	fuzz/fuzz.sh $(BUILD)-fuzz

# Installs orwick, orwick-cli and orwick.desktop under PREFIX (`make install PREFIX=~/.local`).
PREFIX ?= /usr/local
install: $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS) --target orwick orwick-cli
	cmake --install $(BUILD) --prefix $(PREFIX)

clean:
	rm -rf $(BUILD) $(BUILD)-bench $(BUILD)-asan $(BUILD)-fuzz

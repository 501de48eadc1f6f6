# The commands a developer and CI use. `make run` and `make test` install what is missing first.
BUILD ?= build
JOBS ?= $(shell nproc)
# Worktrees share one compiler cache.
export CCACHE_BASEDIR := $(CURDIR)
CMAKE_FLAGS ?=

.PHONY: deps build run test bench fuzz clean

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
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

bench: DEPS_FLAGS = --with-bench
bench: deps
	cmake -S . -B $(BUILD)-bench -G Ninja -DCMAKE_BUILD_TYPE=Release -DORWICK_BENCH=ON -DORWICK_TESTS=OFF
	cmake --build $(BUILD)-bench -j $(JOBS)
	bench/run-all $(BUILD)-bench

# Every fuzz target, a minute each (FUZZ_SECONDS=…).
fuzz: DEPS_FLAGS = --with-checks
fuzz: deps
	fuzz/fuzz.sh $(BUILD)-fuzz

clean:
	rm -rf $(BUILD) $(BUILD)-bench

# The two commands of the quick start, and the sanitizer and fuzz builds CI runs.
JOBS ?= $(shell nproc)
CMAKE_COMMON = -G Ninja -DCMAKE_CXX_COMPILER_LAUNCHER=ccache

.PHONY: deps run test sanitize fuzz bench clean

deps:
	@scripts/install-deps

# Builds the program in Release and runs the example pipeline in examples/.
run: deps
	cmake -S . -B build/release $(CMAKE_COMMON) -DCMAKE_BUILD_TYPE=Release -DVORN_TESTS=OFF -DVORN_BENCH=OFF
	cmake --build build/release -j $(JOBS) --target vorn_learn
	mkdir -p examples/out
	cd examples && ../build/release/vorn_learn quickstart.xml
	@echo "Example done: its results are in examples/out/"

# Builds everything once and runs all unit and pipeline tests.
test: deps
	cmake -S . -B build/test $(CMAKE_COMMON) -DCMAKE_BUILD_TYPE=RelWithDebInfo
	cmake --build build/test -j $(JOBS)
	cd build/test && ctest -j $(JOBS) --output-on-failure

# The same tests under AddressSanitizer and UndefinedBehaviorSanitizer, then a short run of each fuzzer.
sanitize: deps
	cmake -S . -B build/sanitize $(CMAKE_COMMON) -DCMAKE_BUILD_TYPE=Debug -DVORN_SANITIZE=ON -DVORN_BENCH=OFF
	cmake --build build/sanitize -j $(JOBS)
	cd build/sanitize && ctest -j $(JOBS) --output-on-failure
	$(MAKE) fuzz FUZZ_SECONDS=$${FUZZ_SECONDS:-30}

FUZZ_SECONDS ?= 30
fuzz:
	@scripts/install-deps --fuzz
	CC=clang-14 CXX=clang++-14 cmake -S . -B build/fuzz $(CMAKE_COMMON) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVORN_FUZZ=ON
	cmake --build build/fuzz -j $(JOBS)
	scripts/run-fuzzers build/fuzz $(FUZZ_SECONDS)

bench: deps
	cmake -S . -B build/release $(CMAKE_COMMON) -DCMAKE_BUILD_TYPE=Release -DVORN_TESTS=OFF -DVORN_BENCH=ON
	cmake --build build/release -j $(JOBS)
	for b in build/release/bench/bench_*; do $$b; done

clean:
	rm -rf build

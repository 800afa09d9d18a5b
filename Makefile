# Marble Cove: the two set-up commands are `make run` and `make test`; both install what they need first.
BUILD       ?= build
BENCH_BUILD ?= build-bench
FUZZ_BUILD  ?= build-fuzz
FUZZ_SECONDS ?= 180
JOBS        ?= $(shell nproc)
# Rebuilds of a fresh checkout reuse earlier compiles when ccache is there.
LAUNCHER    := $(if $(shell command -v ccache),-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)

.PHONY: deps configure build run test screenshots package package-check bench fuzz reliability mutate sizes clean

deps:
	@bash scripts/deps.sh

configure: deps
	cmake -S . -B $(BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo $(LAUNCHER)

build: configure
	cmake --build $(BUILD) -j $(JOBS)

run: build
	$(BUILD)/app/marblecove

test: build
	QT_QPA_PLATFORM=offscreen ctest --test-dir $(BUILD) --output-on-failure -j $(JOBS)

# Renders the studio and its sheets to PNG files in SHOTS for looking at.
SHOTS ?= screenshots
screenshots: build
	QT_QPA_PLATFORM=offscreen $(BUILD)/tools/screenshots $(SHOTS)

# The Debian package of the application, in $(BUILD); package-check also lints, unpacks and starts it.
package: build
	cmake --build $(BUILD) --target package

package-check: package
	bash packaging/check-package.sh $(BUILD)

bench: deps
	cmake -S . -B $(BENCH_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=Release -DMARBLECOVE_TESTS=OFF -DMARBLECOVE_BENCH=ON $(LAUNCHER)
	cmake --build $(BENCH_BUILD) -j $(JOBS)
	QT_QPA_PLATFORM=offscreen $(BENCH_BUILD)/bench/marblecove_bench --benchmark_repetitions=5 --benchmark_report_aggregates_only=true

# Runs every fuzz target for FUZZ_SECONDS each (make fuzz FUZZ_SECONDS=600 FUZZ_TARGETS=startup).
FUZZ_TARGETS ?= logo startup creations
FUZZ_OPTIONS_logo := fuzz/seeds -dict=fuzz/logo.dict
FUZZ_OPTIONS_startup := fuzz/startup-seeds
FUZZ_OPTIONS_creations := fuzz/creations-seeds
fuzz: deps
	cmake -S . -B $(FUZZ_BUILD) -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ -DMARBLECOVE_FUZZ=ON
	cmake --build $(FUZZ_BUILD) -j $(JOBS)
	$(foreach t,$(FUZZ_TARGETS),mkdir -p $(FUZZ_BUILD)/corpus-$(t) && \
	  $(FUZZ_BUILD)/fuzz/fuzz_$(t) $(FUZZ_BUILD)/corpus-$(t) $(FUZZ_OPTIONS_$(t)) \
	    -max_total_time=$(FUZZ_SECONDS) -timeout=5 -rss_limit_mb=2048 -print_final_stats=1 && ) true

# Faults that need root: full disks, read-only mounts, other users. Prints a table.
reliability: build
	bash tools/reliability.sh $(BUILD)

# Plants small faults one at a time and reports how many the tests catch (its own build dir).
mutate: deps
	bash scripts/mutate.sh

# Non-blank test lines against product lines.
sizes:
	@bash scripts/sizes.sh

clean:
	rm -rf $(BUILD) $(BENCH_BUILD) $(FUZZ_BUILD) build-mutate

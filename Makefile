# Makefile: the front door. `make run` and `make check` are the two commands a newcomer needs.
JOBS      ?= $(shell nproc 2>/dev/null || echo 2)
CMAKE     ?= cmake
CTEST     ?= ctest
CPACK     ?= cpack
PREFIX    ?= /usr/local
BUILD     := build
RUNDIR    := $(BUILD)/run

.PHONY: all deps configure build run check check-asan check-tsan bench fuzz fuzz-run install package clean

all: build

deps:
	@bash scripts/install-deps.sh

$(BUILD)/CMakeCache.txt:
	$(CMAKE) -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release

configure: deps $(BUILD)/CMakeCache.txt

build: configure
	$(CMAKE) --build $(BUILD) -j $(JOBS)

run: build
	@bash scripts/run.sh $(BUILD) $(RUNDIR)

check: build
	cd $(BUILD) && $(CTEST) --output-on-failure -j $(JOBS)

# Leak suppressions hold for the test listing at build time too.
ASAN_ENV := ASAN_OPTIONS=detect_leaks=1 LSAN_OPTIONS=suppressions=$(CURDIR)/scripts/lsan.supp \
	UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1

check-asan: deps
	$(CMAKE) -S . -B $(BUILD)-asan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKESTRO_SANITIZE=address
	$(ASAN_ENV) $(CMAKE) --build $(BUILD)-asan -j $(JOBS)
	cd $(BUILD)-asan && $(ASAN_ENV) $(CTEST) --output-on-failure -j $(JOBS)

check-tsan: deps
	$(CMAKE) -S . -B $(BUILD)-tsan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKESTRO_SANITIZE=thread
	$(CMAKE) --build $(BUILD)-tsan -j $(JOBS)
	cd $(BUILD)-tsan && TSAN_OPTIONS="halt_on_error=1 suppressions=$(CURDIR)/scripts/tsan.supp" $(CTEST) --output-on-failure -j $(JOBS)

# Standard folders under PREFIX; DESTDIR stages the installation elsewhere.
install: build
	DESTDIR=$(DESTDIR) $(CMAKE) --install $(BUILD) --prefix $(PREFIX)

# A Debian package in build/, installing under /usr.
package: build
	cd $(BUILD) && $(CPACK) -G DEB

bench: build
	@bash scripts/bench.sh $(BUILD)

fuzz: deps
	CXX=clang++ CC=clang $(CMAKE) -S . -B $(BUILD)-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DKESTRO_FUZZ=ON
	$(CMAKE) --build $(BUILD)-fuzz -j $(JOBS) --target fuzz_format fuzz_listinput fuzz_records fuzz_content
	@echo "Fuzz targets are in $(BUILD)-fuzz/bin; seeds in runtime/fuzz/corpus. See README."

# FUZZ_SECONDS per target, working corpus outside the repository.
FUZZ_SECONDS ?= 60
fuzz-run: fuzz
	@bash scripts/fuzz.sh $(BUILD)-fuzz $(FUZZ_SECONDS)

clean:
	rm -rf $(BUILD) $(BUILD)-asan $(BUILD)-tsan $(BUILD)-fuzz

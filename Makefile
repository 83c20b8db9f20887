# The two commands a newcomer needs: `make run` and `make test`.
.PHONY: all deps build run test sanitize fuzz bench windows deb clean

JOBS ?= $(shell nproc)

all: build

deps:
	@bash scripts/install-deps.sh

build: deps
	cmake --preset default
	cmake --build --preset default -j $(JOBS)

run: build
	@bash scripts/run.sh

test: build
	ctest --preset default -j $(JOBS)

sanitize: deps
	cmake --preset sanitize
	cmake --build --preset sanitize -j $(JOBS)
	ctest --preset sanitize -j $(JOBS)

fuzz: deps
	bash scripts/run-fuzzers.sh

bench: build
	bash scripts/run-benchmarks.sh

# kova-cli.exe for a Windows station, cross-compiled: build/windows/tools/kova-cli/kova-cli.exe
windows:
	bash scripts/check-windows-build.sh

# The Debian packages kova and kova-cli, checked by lintian: build/deb/*.deb
deb: deps
	JOBS=$(JOBS) bash scripts/build-deb.sh

clean:
	rm -rf build

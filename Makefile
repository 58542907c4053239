# A thin front: each goal does all the set-up that it needs on a fresh Debian machine.
#
#   make demo [DEMO_NODES=small]   a real part, from mesh to document to picture
#   make test                      builds, checks, and all tests, optimised and under the sanitizers
#   make bench                     the table of measures
#   make soak [SOAK_SECONDS=n]     the slow things: thousands of crashes, long fuzzing
#   make format / make lint        the style, applied / clang-tidy over what changed (LINT=--all)
#   make reference                 the public headers as pages, build/reference/html
#   make install [PREFIX=path]     default /usr/local

PREFIX ?= /usr/local
DEMO_NODES ?= big
SOAK_SECONDS ?= 1800
SHELL := /bin/bash

.PHONY: all demo test bench soak format lint reference install clean

all:
	@scripts/install-dependencies.sh build
	@cmake --preset release >/dev/null && cmake --build --preset release

demo:
	@scripts/install-dependencies.sh build demo
	@scripts/demo.sh $(DEMO_NODES)

test:
	@scripts/install-dependencies.sh build
	@scripts/test.sh

bench:
	@scripts/install-dependencies.sh build bench
	@scripts/bench.sh

soak:
	@scripts/install-dependencies.sh build
	@scripts/soak.sh $(SOAK_SECONDS)

format:
	@scripts/install-dependencies.sh build
	@scripts/format.sh

lint:
	@scripts/install-dependencies.sh build
	@scripts/lint.sh $(LINT)

reference:
	@scripts/install-dependencies.sh reference
	@scripts/reference.sh

install:
	@scripts/install-dependencies.sh build
	@cmake --preset release -D CMAKE_INSTALL_PREFIX=$(PREFIX) >/dev/null
	@cmake --build --preset release && cmake --install build/release --prefix $(PREFIX)

clean:
	rm -rf build

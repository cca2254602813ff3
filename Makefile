# A thin face over CMake's presets.
#
#   make demo [IMAGE=photo.jpg]   builds the library and writes gallery/index.html
#   make check                    builds and tests for 64 and 32 bits, and with sanitizers
#   make check-debian13           builds and tests in a root of Debian 13: g++ 14, Highway 1.2
#   make check-aarch64            cross-compiles by clang and tests under qemu
#   make check-x86-64-clang       builds and tests by clang
#   make check-x86-64-native      builds and tests for the machine's own processor alone, with -march=native
#   make check-threads            looks for races, with ThreadSanitizer
#   make check-memory             looks for what valgrind finds: memory that is not the call's, or that nobody has written
#   make check-reproducible       builds the packages twice and compares them
#   make fuzz [SECONDS=60]        calls functions with arguments that a fuzzer finds, in fresh memory and in hostile
#   make bench                    measures every function beside other libraries
#   make python                   builds the Python module, build/x86-64/python
#   make docs                     writes the reference pages, build/x86-64/docs/html/index.html

IMAGE ?=
SECONDS ?= 60
DEPENDENCIES = build
CHECKED = x86-64 i386 x86-64-sanitize
COMPILERS = x86-64-clang x86-64-native aarch64
CONFIGURED = $(CHECKED) $(COMPILERS) x86-64-sanitize-threads x86-64-fuzz

.NOTPARALLEL:
.PHONY: demo check check-debian13 check-threads check-memory check-reproducible fuzz bench docs python dependencies
.PHONY: $(CHECKED:%=check-%) $(COMPILERS:%=check-%) $(CONFIGURED:%=configure-%)

demo: configure-x86-64
	cmake --build --preset x86-64 --target gallery
	build/x86-64/gallery gallery $(if $(IMAGE),"$(IMAGE)")

check: DEPENDENCIES = build examples gstreamer python check
check: $(CHECKED:%=check-%)

check-x86-64-clang: DEPENDENCIES = build clang
check-aarch64: DEPENDENCIES = build aarch64

$(CHECKED:%=check-%) $(COMPILERS:%=check-%): check-%: configure-%
	cmake --build --preset $*
	ctest --test-dir build/$* --parallel 2 --output-on-failure --no-tests=error

check-debian13:
	cmake/check-debian13.sh build/debian13

check-threads: configure-x86-64-sanitize-threads
	cmake --build --preset x86-64-sanitize-threads --target kipcc_tests
	build/x86-64-sanitize-threads/kipcc_tests --gtest_brief=1 --gtest_filter='FirstCalls.*'
	build/x86-64-sanitize-threads/kipcc_tests --gtest_brief=1 --gtest_filter='*Threads*'

check-memory: DEPENDENCIES = build memory
check-memory: configure-x86-64
	cmake --build --preset x86-64 --target kipcc-verify
	valgrind --quiet --error-exitcode=3 build/x86-64/kipcc-verify lowest

check-reproducible: dependencies
	cmake/check-reproducible.sh build/reproducible

fuzz: DEPENDENCIES = build fuzz
fuzz: configure-x86-64-fuzz
	cmake --build --preset x86-64-fuzz --target fuzz
	fuzz/run.sh build/x86-64-fuzz $(SECONDS)

bench: DEPENDENCIES = build bench
bench: configure-x86-64
	cmake --build --preset x86-64 --target bench

python: DEPENDENCIES = build python
python: dependencies
	cmake --preset x86-64 -DKIPCC_PYTHON=ON
	cmake --build --preset x86-64 --target kipcc_python
	@echo "PYTHONPATH=$(CURDIR)/build/x86-64/python python3"

docs: DEPENDENCIES = build docs
docs: configure-x86-64
	cmake --build --preset x86-64 --target docs

$(CONFIGURED:%=configure-%): configure-%: dependencies
	cmake --preset $*

dependencies:
	@cmake/install-dependencies.sh $(DEPENDENCIES)

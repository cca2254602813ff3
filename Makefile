# A thin face over CMake's presets.
#
#   make demo [IMAGE=photo.jpg]   builds the library and writes gallery/index.html
#   make check                    builds and tests for 64 and 32 bits, and with sanitizers
#   make check-debian13           builds and tests in a root of Debian 13: g++ 14, Highway 1.2
#   make check-aarch64            cross-compiles by clang and tests under qemu
#   make check-x86-64-clang       builds and tests by clang
#   make bench                    measures every function beside other libraries
#   make python                   builds the Python module, build/x86-64/python
#   make docs                     writes the reference pages, build/x86-64/docs/html/index.html

IMAGE ?=
DEPENDENCIES = build
CHECKED = x86-64 i386 x86-64-sanitize
COMPILERS = x86-64-clang aarch64

.NOTPARALLEL:
.PHONY: demo check bench docs python dependencies check-debian13 $(CHECKED:%=check-%) $(CHECKED:%=configure-%)
.PHONY: $(COMPILERS:%=check-%) $(COMPILERS:%=configure-%)

demo: configure-x86-64
	cmake --build --preset x86-64 --target gallery
	build/x86-64/gallery gallery $(if $(IMAGE),"$(IMAGE)")

check: DEPENDENCIES = build examples gstreamer python
check: $(CHECKED:%=check-%)

check-x86-64-clang: DEPENDENCIES = build clang
check-aarch64: DEPENDENCIES = build aarch64

$(CHECKED:%=check-%) $(COMPILERS:%=check-%): check-%: configure-%
	cmake --build --preset $*
	ctest --test-dir build/$* --parallel 2 --output-on-failure --no-tests=error

check-debian13:
	cmake/check-debian13.sh build/debian13

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

$(CHECKED:%=configure-%) $(COMPILERS:%=configure-%): configure-%: dependencies
	cmake --preset $*

dependencies:
	@cmake/install-dependencies.sh $(DEPENDENCIES)

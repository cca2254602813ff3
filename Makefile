# A thin face over CMake's presets.
#
#   make demo [IMAGE=photo.jpg]   builds the library and writes gallery/index.html
#   make check                    builds and tests for 64 and 32 bits, and with sanitizers
#   make bench                    measures every function beside other libraries
#   make python                   builds the Python module, build/x86-64/python
#   make docs                     writes the reference pages, build/x86-64/docs/html/index.html

IMAGE ?=
DEPENDENCIES = build
CHECKED = x86-64 i386 x86-64-sanitize

.NOTPARALLEL:
.PHONY: demo check bench docs python dependencies $(CHECKED:%=check-%) $(CHECKED:%=configure-%)

demo: configure-x86-64
	cmake --build --preset x86-64 --target gallery
	build/x86-64/gallery gallery $(if $(IMAGE),"$(IMAGE)")

check: DEPENDENCIES = build examples python
check: $(CHECKED:%=check-%)

$(CHECKED:%=check-%): check-%: configure-%
	cmake --build --preset $*
	ctest --test-dir build/$* --parallel 2 --output-on-failure --no-tests=error

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

$(CHECKED:%=configure-%): configure-%: dependencies
	cmake --preset $*

dependencies:
	@cmake/install-dependencies.sh $(DEPENDENCIES)

# A thin face over CMake's presets.
#
#   make demo [IMAGE=photo.jpg]   builds the library and writes gallery/index.html
#   make check                    builds and tests for 64 and 32 bits, and with sanitizers
#   make bench                    measures every function beside other libraries
#   make docs                     writes the reference pages, build/docs/html/index.html

IMAGE ?=
DEPENDENCIES = build
CHECKED = i386 x86-64-sanitize x86-64

.NOTPARALLEL:
.PHONY: demo check bench docs dependencies $(CHECKED:%=check-%) $(CHECKED:%=configure-%)

demo: configure-x86-64
	cmake --build --preset x86-64 --target gallery
	build/x86-64/gallery gallery $(if $(IMAGE),"$(IMAGE)")

# The last of the builds also compares its results with those of the others.
check: $(CHECKED:%=check-%)

$(CHECKED:%=check-%): check-%: configure-%
	cmake --build --preset $*
	ctest --test-dir build/$* --parallel 2 --output-on-failure

bench: DEPENDENCIES = build bench
bench: configure-x86-64
	cmake --build --preset x86-64 --target kipcc_bench
	build/x86-64/kipcc_bench

docs: DEPENDENCIES = build docs
docs: configure-x86-64
	cmake --build --preset x86-64 --target docs

$(CHECKED:%=configure-%): configure-%: dependencies
	cmake --preset $*

dependencies:
	@cmake/install-dependencies.sh $(DEPENDENCIES)

# Makes a wheel, unpacks it, and converts with what it holds and nothing else of ours.
# -DROOT=folder -DBUILD=folder -DPYTHON=interpreter

set(HERE ${BUILD}/wheel-test)
file(REMOVE_RECURSE ${HERE})
file(MAKE_DIRECTORY ${HERE})
execute_process(
  COMMAND ${CMAKE_COMMAND} -E env KIPCC_BUILD=${BUILD}
    ${PYTHON} -m pip wheel --quiet --no-index --no-build-isolation --no-deps --wheel-dir ${HERE} ${ROOT}
  COMMAND_ERROR_IS_FATAL ANY)
file(GLOB WHEEL ${HERE}/kipcc-*.whl)
file(ARCHIVE_EXTRACT INPUT ${WHEEL} DESTINATION ${HERE}/unpacked)
execute_process(
  COMMAND ${CMAKE_COMMAND} -E env PYTHONPATH=${HERE}/unpacked ${PYTHON} -c "
import kipcc
libraries = [line.split()[-1] for line in open('/proc/self/maps') if 'libkip' in line]
assert len(set(libraries)) == 3 and all('${HERE}' in library for library in libraries), libraries
assert kipcc.convert(bytes([255, 0, 0]), 'rgb24', 'bgr24', size=(1, 1)).tolist() == [[[0, 0, 255]]]
"
  COMMAND_ERROR_IS_FATAL ANY)

# Libraries that ship no CMake package of their own (FFTW 2), or one that is of use in part only.

find_path(VXGRID_FFTW_INCLUDE_DIR rfftw.h)
find_library(VXGRID_RFFTW_LIBRARY rfftw)
find_library(VXGRID_FFTW_LIBRARY fftw)
if(NOT VXGRID_FFTW_INCLUDE_DIR OR NOT VXGRID_RFFTW_LIBRARY OR NOT VXGRID_FFTW_LIBRARY)
  message(FATAL_ERROR "FFTW 2 (double precision, rfftw.h) not found; on Debian: apt-get install fftw-dev")
endif()
add_library(vxgrid_fftw INTERFACE)
add_library(VXGrid::fftw ALIAS vxgrid_fftw)
target_include_directories(vxgrid_fftw SYSTEM INTERFACE "${VXGRID_FFTW_INCLUDE_DIR}")
target_link_libraries(vxgrid_fftw INTERFACE "${VXGRID_RFFTW_LIBRARY}" "${VXGRID_FFTW_LIBRARY}")

# gemmi 0.5 is used through its headers; compressed input goes through zlib.
find_path(VXGRID_GEMMI_INCLUDE_DIR gemmi/mtz.hpp)
if(NOT VXGRID_GEMMI_INCLUDE_DIR)
  message(FATAL_ERROR "gemmi headers not found; on Debian: apt-get install gemmi-dev")
endif()
add_library(vxgrid_gemmi INTERFACE)
add_library(VXGrid::gemmi ALIAS vxgrid_gemmi)
target_include_directories(vxgrid_gemmi SYSTEM INTERFACE "${VXGRID_GEMMI_INCLUDE_DIR}")
target_link_libraries(vxgrid_gemmi INTERFACE ZLIB::ZLIB)
# Debian's gemmi greets its use of Debian's stb_sprintf.h with a #warning.
target_compile_options(vxgrid_gemmi INTERFACE -Wno-cpp)

# RapidJSON is all headers, and part of the public ones: callers need its folder as well.
find_path(VXGRID_RAPIDJSON_INCLUDE_DIR rapidjson/document.h)
if(NOT VXGRID_RAPIDJSON_INCLUDE_DIR)
  message(FATAL_ERROR "RapidJSON headers not found; on Debian: apt-get install rapidjson-dev")
endif()

# The CIF headers of gemmi 0.5 hold vectors of a class before it is complete, which is beyond what
# C++20 allows and clang says so. There the sources that include them are C++17; by -Xclang, since
# the target's own standard stands last on the command line.
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  set_source_files_properties("${PROJECT_SOURCE_DIR}/src/reflection/mmcif_map.cpp"
                              "${PROJECT_SOURCE_DIR}/src/toolkit/mol/mmcif_reader.cpp"
                              "${PROJECT_SOURCE_DIR}/src/toolkit/mol/molecule_writer.cpp"
                              PROPERTIES COMPILE_OPTIONS "-Xclang;-std=c++17")
endif()

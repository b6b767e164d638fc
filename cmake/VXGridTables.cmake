# Turns the readable data files into tables that the library holds as constants.

# Adds the tables made from data/*.txt to the sources of a target; they are made again when a data
# file or the generator changes.
function(vxgrid_add_tables target)
  set(data "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../data")
  set(generated "${CMAKE_CURRENT_BINARY_DIR}/generated")
  file(MAKE_DIRECTORY "${generated}")

  add_executable(vxgrid_make_tables EXCLUDE_FROM_ALL "${data}/make_tables.cpp")
  target_compile_features(vxgrid_make_tables PRIVATE cxx_std_17)
  vxgrid_set_warnings(vxgrid_make_tables)

  foreach(table IN ITEMS space_groups scattering_factors)
    set(source "${generated}/${table}.cpp")
    add_custom_command(
      OUTPUT "${source}"
      COMMAND vxgrid_make_tables ${table} "${data}/${table}.txt" "${source}"
      DEPENDS vxgrid_make_tables "${data}/${table}.txt"
      COMMENT "Making the table of ${table}"
      VERBATIM)
    target_sources(${target} PRIVATE "${source}")
  endforeach()
endfunction()

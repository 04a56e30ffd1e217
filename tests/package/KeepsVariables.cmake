# For projects that ask of a package or a part that it leave their variables alone:
#
#   remember_variables()
#   find_package(Something)
#   expect_variables_kept()

# What CMake itself changes in between.
set(changed_by_cmake "^(ARGC|ARGV|ARGN|ARGV[0-9]+|CMAKE_CURRENT_.*|CMAKE_MATCH_.*|name|.*kept_.*)$")

# Notes all variables, those of the cache too, and their values.
macro(remember_variables)
  get_cmake_property(kept_names VARIABLES)
  foreach(name IN LISTS kept_names)
    set(kept_value_${name} "${${name}}")
  endforeach()
endmacro()

# Fails when one of those has another value now.
macro(expect_variables_kept)
  foreach(name IN LISTS kept_names)
    if(NOT name MATCHES "${changed_by_cmake}" AND NOT "${${name}}" STREQUAL "${kept_value_${name}}")
      message(SEND_ERROR "${name} was \"${kept_value_${name}}\" and is \"${${name}}\"")
    endif()
  endforeach()
endmacro()

# Fails unless Package.swift and the podspec in ROOT list exactly the files of SOURCES, each once,
# all of them exist, and the podspec and the man page have the version VERSION:
#
#   cmake -DROOT=folder -DVERSION=1.0 "-DSOURCES=a.cpp;b.mm" -P ComparePackages.cmake
cmake_minimum_required(VERSION 3.25)

# Without these, a mistake in the call would compare nothing with nothing.
if(NOT ROOT OR NOT VERSION OR NOT SOURCES)
  message(FATAL_ERROR "ROOT, VERSION and SOURCES must be given")
endif()

# report(WORDS...): adds a line to the problems.
macro(report)
  string(APPEND problems "\n  " ${ARGN})
endmacro()

# listed_sources(FILE RESULT): the quoted names of sources in FILE, comments left out.
function(listed_sources file result)
  file(READ "${ROOT}/${file}" text)
  string(REGEX REPLACE "(^|[ \t\n])(//|#)[^\n]*" "\\1" text "${text}")
  string(REGEX MATCHALL "[\"'][^\"'\n]*\\.(cpp|mm)[\"']" names "${text}")
  list(TRANSFORM names REPLACE "[\"']" "")
  set(${result} "${names}" PARENT_SCOPE)
endfunction()

# compare(FILE): adds what differs between FILE and SOURCES to the problems.
function(compare file)
  listed_sources(${file} listed)
  set(seen "")
  foreach(source IN LISTS listed)
    if(source IN_LIST seen)
      report("${file} lists ${source} again")
    elseif(NOT source IN_LIST SOURCES)
      report("${file} lists ${source}, which CMakeLists.txt does not")
    endif()
    list(APPEND seen "${source}")
  endforeach()
  foreach(source IN LISTS SOURCES)
    if(NOT source IN_LIST listed)
      report("${file} lacks ${source}")
    endif()
  endforeach()
  set(problems "${problems}" PARENT_SCOPE)
endfunction()

# expect_text(FILE TEXT): adds a problem unless FILE holds TEXT.
function(expect_text file text)
  file(READ "${ROOT}/${file}" content)
  string(FIND "${content}" "${text}" at)
  if(at EQUAL -1)
    report("${file} lacks: ${text}")
  endif()
  set(problems "${problems}" PARENT_SCOPE)
endfunction()

set(problems "")
expect_text(MorveluneExtension.podspec "s.version = '${VERSION}'")
expect_text(docs/morvelune.1 "\"morvelune ${VERSION}\"")
compare(Package.swift)
compare(MorveluneExtension.podspec)
foreach(source IN LISTS SOURCES)
  if(NOT EXISTS "${ROOT}/${source}")
    report("${source} does not exist")
  endif()
endforeach()
if(problems)
  message(FATAL_ERROR "The packages differ:${problems}")
endif()

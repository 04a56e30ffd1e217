# Fails unless Package.swift and the podspec in ROOT take exactly the files of SOURCES and link the
# same frameworks and libraries, all files exist, none uses an interface for which Apple asks a reason,
# and the podspec and the man page have the version VERSION:
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

# quoted(FILE START RESULT): the quoted texts in FILE from START to the next line that ends with "]",
# comments left out.
function(quoted file start result)
  file(READ "${ROOT}/${file}" text)
  string(REGEX REPLACE "(^|[ \t\n])(//|#)[^\n]*" "\\1" text "${text}")
  string(FIND "${text}" "${start}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "${file} lacks: ${start}")
  endif()
  string(SUBSTRING "${text}" ${at} -1 text)
  string(REGEX MATCH "\\](,?\n|$)" end "${text}")
  string(FIND "${text}" "${end}" length)
  string(SUBSTRING "${text}" 0 ${length} text)
  string(REGEX MATCHALL "[\"'][^\"'\n]*[\"']" texts "${text}")
  list(TRANSFORM texts REPLACE "[\"']" "")
  set(${result} "${texts}" PARENT_SCOPE)
endfunction()

# expand(RESULT PATTERNS...): the sources that the patterns find, by their names in ROOT.
function(expand result)
  list(TRANSFORM ARGN PREPEND "${ROOT}/")
  file(GLOB_RECURSE found RELATIVE "${ROOT}" ${ARGN})
  list(FILTER found INCLUDE REGEX "\\.(cpp|mm)$")
  set(${result} "${found}" PARENT_SCOPE)
endfunction()

# compare(FILE FOUND...): adds what differs between FOUND, which FILE takes, and SOURCES.
function(compare file)
  foreach(source IN LISTS ARGN)
    if(NOT source IN_LIST SOURCES)
      report("${file} takes ${source}, which CMakeLists.txt does not")
    endif()
  endforeach()
  foreach(source IN LISTS SOURCES)
    if(NOT source IN_LIST ARGN)
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

# A folder stands for all that is in it and is not excluded.
quoted(Package.swift "sources: [" taken)
foreach(each IN LISTS taken)
  if(IS_DIRECTORY "${ROOT}/${each}")
    list(APPEND taken "${each}/*.cpp" "${each}/*.mm")
  endif()
endforeach()
expand(sources ${taken})
quoted(Package.swift "exclude: [" excluded)
foreach(each IN LISTS excluded)
  list(FILTER sources EXCLUDE REGEX "^${each}(/|$)")
  if(NOT EXISTS "${ROOT}/${each}")
    report("Package.swift excludes ${each}, which does not exist")
  endif()
endforeach()
compare(Package.swift ${sources})

# Here a pattern does not reach into folders.
quoted(MorveluneExtension.podspec "s.source_files = [" taken)
list(FILTER taken INCLUDE REGEX "\\.(cpp|mm)$")
set(sources)
foreach(each IN LISTS taken)
  file(GLOB found RELATIVE "${ROOT}" "${ROOT}/${each}")
  list(APPEND sources ${found})
endforeach()
compare(MorveluneExtension.podspec ${sources})

quoted(Package.swift "linkerSettings: [" linked)
list(SORT linked)
file(STRINGS "${ROOT}/MorveluneExtension.podspec" lines REGEX "s\\.(frameworks|libraries) = ")
string(REGEX MATCHALL "'[^']*'" links "${lines}")
list(TRANSFORM links REPLACE "'" "")
list(SORT links)
if(NOT linked STREQUAL links)
  report("Package.swift links ${linked}, the podspec ${links}")
endif()

# The privacy manifest says that none is used: times of files, time since the start, free space,
# keyboards, the user's defaults.
set(reasoned
    "[^a-zA-Z_:](f|l)?stat(v?fs|at)?\\(|getattrlist|(creation|modification)Date|(Creation|Modification)Date|\
systemUptime|mach_absolute_time|[vV]olume[a-zA-Z]*Capacity|NSFileSystem|NSURLVolume|activeInputModes|\
NSUserDefaults|CFPreferences|getResourceValue|attributesOfItem|attributesOfFileSystem|filesystem|steady_clock")
file(GLOB_RECURSE headers RELATIVE "${ROOT}" "${ROOT}/apple/*.h" "${ROOT}/include/*.h"
     "${ROOT}/payload/*.h" "${ROOT}/detection/*.h" "${ROOT}/platform/*.h" "${ROOT}/util/*.h")
list(FILTER headers EXCLUDE REGEX "/linux/")
foreach(source IN LISTS SOURCES headers)
  if(NOT EXISTS "${ROOT}/${source}")
    report("${source} does not exist")
    continue()
  endif()
  file(STRINGS "${ROOT}/${source}" used REGEX "${reasoned}")
  if(used)
    report("${source} needs a reason in apple/PrivacyInfo.xcprivacy: ${used}")
  endif()
endforeach()
if(problems)
  message(FATAL_ERROR "The packages are wrong:${problems}")
endif()

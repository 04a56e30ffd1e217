# Finds GNUstep's Foundation for clang and the GCC runtime, as the target GNUstep. Sources link one of
# these, which bring it:
#
#   GNUstep::Manual  without automatic reference counting
#   GNUstep::ARC     with it; the code is for a newer runtime and needs its entry points
#   GNUstep::IOS     with it, for the runtime of iOS; the code cannot be linked. What iOS 13 has, and what
#                    extensions may use, is not checked: the compiler does that for Apple's target alone.
include(FindPackageHandleStandardArgs)
find_program(GNUSTEP_CONFIG gnustep-config)
find_package_handle_standard_args(GNUstep REQUIRED_VARS GNUSTEP_CONFIG)

# GCC carries the runtime's headers in a folder of its own, beside its others.
execute_process(COMMAND gcc -print-file-name=include OUTPUT_VARIABLE gcc_include
                OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND gcc -print-file-name=libobjc.so OUTPUT_VARIABLE objc_library
                OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${GNUSTEP_CONFIG} --objc-flags OUTPUT_VARIABLE gnustep_flags
                OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(gnustep_flags UNIX_COMMAND "${gnustep_flags}")
# Of GNUstep's flags only those that its headers and runtime need; warnings and optimisation are ours.
set(gnustep_includes ${gnustep_flags})
list(FILTER gnustep_flags INCLUDE REGEX "^(-D|-fconstant-string-class|-fexceptions|-fobjc-exceptions)")
list(FILTER gnustep_flags EXCLUDE REGEX "GSWARN|GSDIAGNOSE")
list(FILTER gnustep_includes INCLUDE REGEX "^-I/")
list(TRANSFORM gnustep_includes REPLACE "^-I" "")

add_library(GNUstep INTERFACE)
target_compile_options(
  GNUstep INTERFACE $<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:-fblocks>
                    $<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:${gnustep_flags}>)
target_include_directories(GNUstep SYSTEM INTERFACE ${gnustep_includes})
# After clang's own headers, whose namesakes are there too.
target_compile_options(GNUstep INTERFACE "SHELL:-idirafter ${gcc_include}")
# The blocks runtime first: GNUstep carries another, which leaves blocks on the stack.
target_link_libraries(GNUstep INTERFACE BlocksRuntime gnustep-base ${objc_library} Threads::Threads)

function(gnustep_mode name)
  add_library(GNUstep_${name} INTERFACE)
  add_library(GNUstep::${name} ALIAS GNUstep_${name})
  target_compile_options(GNUstep_${name} INTERFACE $<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:${ARGN}>)
  target_link_libraries(GNUstep_${name} INTERFACE GNUstep)
endfunction()
gnustep_mode(Manual -fobjc-runtime=gcc -fno-objc-arc)
gnustep_mode(ARC -fobjc-runtime=gnustep-1.8 -fobjc-legacy-dispatch -fobjc-arc)
gnustep_mode(IOS -fobjc-runtime=ios-13.0 -fobjc-arc -fapplication-extension)

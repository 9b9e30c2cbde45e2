include(GNUInstallDirs)

# Warnings for our own code, one reason each:
set(LUMATREX_WARNINGS
  -Wall                 # the common set
  -Wextra               # unused parameters, sign compares and the like
  -Wno-unused-parameter # virtual overrides keep the full classic signatures
)

# lumatrex_module(NAME SOURCES ... [DEPENDS module ...] [QT component ...])
# An object library of one folder. It sees the repository root as include
# root and links only the modules and Qt components named.
function(lumatrex_module name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS;QT" ${ARGN})
  add_library(${name} OBJECT ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_compile_options(${name} PRIVATE ${LUMATREX_WARNINGS})
  foreach(dep IN LISTS ARG_DEPENDS)
    target_link_libraries(${name} PUBLIC ${dep})
  endforeach()
  foreach(component IN LISTS ARG_QT)
    target_link_libraries(${name} PUBLIC Qt6::${component})
  endforeach()
endfunction()

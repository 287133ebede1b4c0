# The public headers: copies of the library's interface headers under one
# include root, <pimtlv/...>, made at configure time in the build tree and
# installed from there. The source tree keeps its layout; only the include
# lines of the copies are mapped to the public paths:
#   platform/X                              -> pimtlv/platform/X
#   parsercreatorcollection/src/tlv/<dir>/X -> pimtlv/tlv/X
#   pimshared/X                             -> pimtlv/X
#   bridges/X                               -> pimtlv/bridges/X
# A public header that includes a header which is not public stops the
# configuration: the engines behind the interface stay out of the install.

set(PIMTLV_PUBLIC_INCLUDE_DIR ${PROJECT_BINARY_DIR}/include)

function(pimtlv_public_path source out)
  set(path "${source}")
  string(REGEX REPLACE "^parsercreatorcollection/src/tlv/[a-z]+/" "tlv/" path "${path}")
  string(REGEX REPLACE "^pimshared/" "" path "${path}")
  set(${out} "pimtlv/${path}" PARENT_SCOPE)
endfunction()

# pimtlv_public_headers(DESTINATION_COMPONENT header...): headers are given
# relative to the source root. Each is copied with mapped include lines and
# installed with the given install component.
function(pimtlv_public_headers)
  foreach(header ${ARGN})
    set_property(GLOBAL APPEND PROPERTY PIMTLV_PUBLIC_HEADERS ${header})
    pimtlv_public_path(${header} public)
    set(source ${PROJECT_SOURCE_DIR}/${header})
    file(READ ${source} content)
    string(REGEX MATCHALL "#include \"[^\"]+\"" includes "${content}")
    foreach(line ${includes})
      string(REGEX REPLACE "#include \"([^\"]+)\"" "\\1" included "${line}")
      pimtlv_public_path(${included} mapped)
      string(REPLACE "${line}" "#include \"${mapped}\"" content "${content}")
      set_property(GLOBAL APPEND PROPERTY PIMTLV_PUBLIC_INCLUDED "${header}|${included}")
    endforeach()
    set(target ${PIMTLV_PUBLIC_INCLUDE_DIR}/${public})
    set(old "")
    if(EXISTS ${target})
      file(READ ${target} old)
    endif()
    # Written only when it changed, so that a reconfiguration rebuilds nothing.
    if(NOT old STREQUAL content)
      file(WRITE ${target} "${content}")
    endif()
    set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${source})
    get_filename_component(dir ${public} DIRECTORY)
    install(FILES ${target} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${dir})
  endforeach()
endfunction()

# Called once every public header is known.
function(pimtlv_check_public_headers)
  get_property(headers GLOBAL PROPERTY PIMTLV_PUBLIC_HEADERS)
  get_property(pairs GLOBAL PROPERTY PIMTLV_PUBLIC_INCLUDED)
  foreach(pair ${pairs})
    string(REPLACE "|" ";" pair "${pair}")
    list(GET pair 0 header)
    list(GET pair 1 included)
    if(NOT included IN_LIST headers)
      message(FATAL_ERROR "public header ${header} includes ${included}, which is not public")
    endif()
  endforeach()
endfunction()

# The install RUNPATH of a target installed to `destination` (relative to the
# prefix) that finds the libraries of this package wherever the prefix is.
function(pimtlv_relative_runpath target destination)
  file(RELATIVE_PATH rel /prefix/${destination} /prefix/${CMAKE_INSTALL_LIBDIR})
  if(rel STREQUAL "")
    set(runpath "$ORIGIN")
  else()
    set(runpath "$ORIGIN/${rel}")
  endif()
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "${runpath}")
endfunction()

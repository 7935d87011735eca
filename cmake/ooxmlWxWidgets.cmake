# Provides the imported target wxWidgets::wxWidgets (base and xml libraries),
# which CMake's FindwxWidgets module only defines from CMake 3.27 on.
# Used by the build and by the installed package configuration alike.
if(NOT TARGET wxWidgets::wxWidgets)
  if(COMMAND find_dependency)
    find_dependency(wxWidgets 3.2 COMPONENTS xml base)
  else()
    find_package(wxWidgets 3.2 REQUIRED COMPONENTS xml base)
  endif()
  if(NOT TARGET wxWidgets::wxWidgets)
    add_library(wxWidgets::wxWidgets INTERFACE IMPORTED)
    set_target_properties(wxWidgets::wxWidgets PROPERTIES
      INTERFACE_INCLUDE_DIRECTORIES "${wxWidgets_INCLUDE_DIRS}"
      INTERFACE_COMPILE_DEFINITIONS "${wxWidgets_DEFINITIONS}"
      INTERFACE_COMPILE_OPTIONS "${wxWidgets_CXX_FLAGS}"
      INTERFACE_LINK_LIBRARIES "${wxWidgets_LIBRARIES}")
  endif()
endif()

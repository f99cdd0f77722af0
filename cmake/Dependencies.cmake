# SPDX-License-Identifier: MIT
# Every third-party package, once; targets link the names made here.
find_package(Threads REQUIRED)
set(OpenGL_GL_PREFERENCE GLVND)
find_package(OpenGL REQUIRED COMPONENTS OpenGL EGL)
find_package(PkgConfig REQUIRED)
find_library(ORBIVUE_LIB3DS 3ds REQUIRED)

# CMake's wx module has no imported target; its headers are SYSTEM, or they give us over 1,000 warnings.
function(orbivue_find_wx target)
  find_package(wxWidgets 3.2 REQUIRED COMPONENTS ${ARGN})
  add_library(${target} INTERFACE)
  target_include_directories(${target} SYSTEM INTERFACE ${wxWidgets_INCLUDE_DIRS})
  target_compile_definitions(${target} INTERFACE ${wxWidgets_DEFINITIONS})
  target_compile_options(${target} INTERFACE ${wxWidgets_CXX_FLAGS})
  target_link_libraries(${target} INTERFACE ${wxWidgets_LIBRARIES})
endfunction()
# orbivue_wxbase: what needs neither pictures nor windows. Only sources may include it.
orbivue_find_wx(orbivue_wxbase base)
if(ORBIVUE_GUI)
  find_package(OpenGL REQUIRED COMPONENTS OpenGL GLX)
  # orbivue_wx: windows. Only ..._ui targets and programs link it.
  orbivue_find_wx(orbivue_wx aui gl core base)
endif()

if(ORBIVUE_TESTS)
  find_package(GTest REQUIRED)
  include(GoogleTest)
endif()
if(ORBIVUE_BENCH)
  find_package(benchmark REQUIRED)
endif()

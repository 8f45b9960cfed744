# Every header of the core, its contracts and what hosts include compiles alone; on Windows also before and after the
# system headers, whose macros rename what they meet.
set(folders base control picture picture/kernels imagefile twain platform/contracts platform/surface)
if(WIN32)
  list(APPEND folders platform/win32 server)
else()
  list(APPEND folders platform/portable)
endif()
list(TRANSFORM folders REPLACE ".+" "${CMAKE_SOURCE_DIR}/\\0/*.h")
file(GLOB headers CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR} ${folders})
list(APPEND headers embed/control.h embed/control_window.h embed/quillet.h embed/stage.h)

set(all_headers "")
set(sources "")
foreach(header ${headers})
  string(APPEND all_headers "#include \"${header}\"\n")
  string(MAKE_C_IDENTIFIER ${header} name)
  file(CONFIGURE OUTPUT header_check/${name}.cpp CONTENT "#include \"${header}\"\n")
  list(APPEND sources ${CMAKE_CURRENT_BINARY_DIR}/header_check/${name}.cpp)
endforeach()
if(WIN32)
  set(sdk "#include \"platform/win32/sdk.h\"\n")
  file(CONFIGURE OUTPUT header_check/before_sdk.cpp CONTENT "${all_headers}${sdk}" @ONLY)
  file(CONFIGURE OUTPUT header_check/after_sdk.cpp CONTENT "${sdk}${all_headers}" @ONLY)
  list(APPEND sources ${CMAKE_CURRENT_BINARY_DIR}/header_check/before_sdk.cpp
       ${CMAKE_CURRENT_BINARY_DIR}/header_check/after_sdk.cpp)
endif()

add_library(header_check OBJECT ${sources})
target_include_directories(header_check PRIVATE ${CMAKE_SOURCE_DIR})
target_link_libraries(header_check PRIVATE quillet_options)
if(WIN32)
  # What the interface compiler makes of the type library.
  add_dependencies(header_check quillet_server)
  target_include_directories(header_check
    SYSTEM PRIVATE $<TARGET_PROPERTY:quillet_server,INTERFACE_SYSTEM_INCLUDE_DIRECTORIES>)
endif()
target_compile_options(header_check PRIVATE -O0)  # nobody runs it

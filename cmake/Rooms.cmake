# A room of the architecture: the objects of one folder below src, or of several, part of the server's library.
#   pixmora_room(NAME FOLDERS [LIBRARIES...])
function(pixmora_room name folders)
  pixmora_add_room(SERVER ${name} "${folders}" ${ARGN})
endfunction()

# A room with windows, part of the desktop's library.
#   pixmora_desktop_room(NAME FOLDER [LIBRARIES...])
function(pixmora_desktop_room name folder)
  pixmora_add_room(DESKTOP ${name} ${folder} Qt6::Widgets ${ARGN})
endfunction()

function(pixmora_add_room part name folders)
  list(TRANSFORM folders REPLACE "(.+)" "${PROJECT_SOURCE_DIR}/src/\\1/*.cpp")
  file(GLOB sources CONFIGURE_DEPENDS ${folders})
  if(NOT sources)
    return()
  endif()
  add_library(room_${name} OBJECT ${sources})
  target_link_libraries(room_${name} PUBLIC pixmora_options ${ARGN})
  set_property(GLOBAL APPEND PROPERTY PIXMORA_${part}_ROOMS room_${name})
endfunction()

# The library of the rooms of a part, SERVER or DESKTOP.
#   pixmora_library(NAME PART LIBRARIES...)
function(pixmora_library name part)
  get_property(rooms GLOBAL PROPERTY PIXMORA_${part}_ROOMS)
  list(TRANSFORM rooms REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>")
  add_library(${name} STATIC ${rooms})
  target_link_libraries(${name} PUBLIC pixmora_options ${ARGN})
endfunction()

# The tests of one room: every file of tests/NAME and the folders in it, linked with the named rooms and no others.
#   pixmora_room_tests(NAME ROOMS...)
function(pixmora_room_tests name)
  pixmora_add_room_tests(${name} test_support ${ARGN})
endfunction()

# The tests of a room with windows, on a platform that needs no display.
#   pixmora_desktop_room_tests(NAME ROOMS...)
function(pixmora_desktop_room_tests name)
  pixmora_add_room_tests(${name} test_support_desktop ${ARGN})
  if(TARGET test_${name})
    target_link_libraries(test_${name} PRIVATE Qt6::Widgets Qt6::Test)
  endif()
endfunction()

function(pixmora_add_room_tests name support)
  set(folder ${PROJECT_SOURCE_DIR}/tests/${name})
  file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/*/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(test_${name} ${sources} $<TARGET_OBJECTS:${support}>)
  target_include_directories(test_${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(test_${name} PRIVATE pixmora_options GTest::gtest GTest::gmock)
  target_compile_options(test_${name} PRIVATE -O0)  # what takes the time is their building, not their running
  foreach(room IN LISTS ARGN)
    if(TARGET room_${room})
      target_link_libraries(test_${name} PRIVATE room_${room})
    endif()
  endforeach()
  add_dependencies(test_${name} modules)
  # One process for the room, its cases in another order each time; from where the compiler ran, since ccache can make the
  # names of sources relative to that folder.
  add_test(NAME ${name} COMMAND test_${name} --gtest_shuffle --gtest_brief=1 WORKING_DIRECTORY ${CMAKE_BINARY_DIR})
endfunction()

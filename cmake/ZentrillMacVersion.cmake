# The oldest macOS that a build for it is made for; the bundle says so, too. Qt's current versions, which Homebrew has,
# run on none that is older.
set(ZENTRILL_OLDEST_MACOS 13.0)
# It has to be known before the first compiler is looked for, and counts on a Mac alone.
if(CMAKE_HOST_APPLE)
  set(CMAKE_OSX_DEPLOYMENT_TARGET "${ZENTRILL_OLDEST_MACOS}" CACHE STRING "Oldest macOS")
endif()

# Cairo from its archive. The shared library brings sixteen X11 libraries along that a program without a window never
# calls; loading them takes longer than a small drawing does. Readers of foreign bytes (libpng, Expat, FreeType) stay
# shared, so that their security updates reach us. Where a system has no archive, the shared library serves.
#
# sorvik_cairo is the target to link.
pkg_check_modules(CAIRO REQUIRED IMPORTED_TARGET cairo)
find_library(CAIRO_ARCHIVE libcairo.a)
find_library(PIXMAN_ARCHIVE libpixman-1.a)
set(cairo_needs fontconfig freetype png16 z)
set(cairo_names xcb-shm xcb-render xcb Xrender Xext X11) # named by the archive, dropped by the linker

add_library(sorvik_cairo INTERFACE)
if(CAIRO_ARCHIVE AND PIXMAN_ARCHIVE)
  target_include_directories(sorvik_cairo SYSTEM INTERFACE ${CAIRO_INCLUDE_DIRS})
  target_link_libraries(sorvik_cairo INTERFACE
    ${CAIRO_ARCHIVE} ${PIXMAN_ARCHIVE} ${cairo_needs} ${cairo_names} m Threads::Threads)
  target_link_options(sorvik_cairo INTERFACE -Wl,--gc-sections)
else()
  target_link_libraries(sorvik_cairo INTERFACE PkgConfig::CAIRO)
endif()

# tobrimax_metainfo(FILE HOMEPAGE): writes the application's AppStream description, which software centres show. FILE is
# named ID.metainfo.xml. With an empty HOMEPAGE the description has no address and no screenshots. Its releases are those in
# CHANGELOG.md.
function(tobrimax_metainfo file homepage)
  set(changelog ${PROJECT_SOURCE_DIR}/CHANGELOG.md)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${changelog})
  get_filename_component(id ${file} NAME)
  string(REPLACE ".metainfo.xml" "" id ${id})

  set(releases)
  file(STRINGS ${changelog} headings REGEX "^## \\[[0-9.]+\\] - [0-9-]+$")
  foreach(heading IN LISTS headings)
    string(REGEX REPLACE "^## \\[(.*)\\] - (.*)$" "    <release version=\"\\1\" date=\"\\2\"/>\n" release "${heading}")
    string(APPEND releases "${release}")
  endforeach()

  set(addresses)
  if(homepage)
    string(REGEX REPLACE "/+$" "" homepage "${homepage}")
    string(REPLACE "&" "&amp;" homepage "${homepage}")
    string(REPLACE "<" "&lt;" homepage "${homepage}")
    string(CONFIGURE [[
  <url type="homepage">@homepage@</url>
  <screenshots>
    <screenshot type="default">
      <caption>A picture with a rounded border, and the icons it will make</caption>
      <image>@homepage@/docs/window.png</image>
    </screenshot>
    <screenshot>
      <caption>The same on a dark desktop</caption>
      <image>@homepage@/docs/window-dark.png</image>
    </screenshot>
  </screenshots>
]] addresses @ONLY)
  endif()
  configure_file(${PROJECT_SOURCE_DIR}/packaging/metainfo.xml.in ${file} @ONLY)
endfunction()

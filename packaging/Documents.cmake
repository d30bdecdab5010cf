# The licence as Debian's format for copyright files wants it: each line starts with a space, and an empty line has a dot.
file(STRINGS ${PROJECT_SOURCE_DIR}/LICENSE copyright REGEX "^Copyright")
string(REGEX REPLACE "^Copyright \\(c\\) " "" copyright "${copyright}")
file(READ ${PROJECT_SOURCE_DIR}/LICENSE licence)
string(REGEX REPLACE "^.*Copyright[^\n]*\n+" "" licence "${licence}")
string(STRIP "${licence}" licence)
string(REGEX REPLACE "\n\n" "\n.\n" licence "${licence}")
string(REGEX REPLACE "\n" "\n " licence " ${licence}")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/LICENSE)
configure_file(copyright.in copyright @ONLY)

install(FILES ${CMAKE_CURRENT_BINARY_DIR}/copyright ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/tobrimax)
# The application's Help menu opens the guide. The guide leads to the others.
file(GLOB guides CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/*.md)
install(FILES ${guides} DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/tobrimax/docs)

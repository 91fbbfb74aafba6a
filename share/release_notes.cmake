# Puts the releases of a changelog into `variable`, in the form of AppStream's <release> elements. What is not released yet is
# left out.
function(release_notes variable changelog)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${changelog}")
  file(READ "${changelog}" text)
  foreach(pair "&/&amp;" "</&lt;" ">/&gt;")
    string(REGEX MATCH "^(.)/(.*)$" pair "${pair}")
    string(REPLACE "${CMAKE_MATCH_1}" "${CMAKE_MATCH_2}" text "${text}")
  endforeach()
  string(REGEX REPLACE "`" "" text "${text}")
  string(REGEX REPLACE "\n +" " " text "${text}")
  string(REGEX MATCH "\n## [0-9].*" text "${text}")
  string(REGEX REPLACE "\n- ([^\n]*)" "\n          <li>\\1</li>" text "${text}")
  string(REGEX REPLACE "\n## ([0-9.]+) \\(([0-9-]+)\\)\n+" "</ul>\n      </description>\n    </release>\n    <release version=\"\\1\" date=\"\\2\">\n      <description>\n        <ul>\n" text "${text}")
  string(FIND "${text}" "<release " first)  # before it stands only what would have ended another
  string(SUBSTRING "${text}" ${first} -1 text)
  string(STRIP "${text}" text)
  set(${variable} "${text}\n        </ul>\n      </description>\n    </release>" PARENT_SCOPE)
endfunction()

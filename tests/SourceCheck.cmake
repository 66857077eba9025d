# What the source checks share: the end of a check, with what it found or how much it looked at.
function(end_source_check found what checked)
    if(found)
        string(REPLACE ";" "\n  " list "${found}")
        message(FATAL_ERROR "${what}:\n  ${list}")
    endif()
    message(STATUS "${checked}")
endfunction()

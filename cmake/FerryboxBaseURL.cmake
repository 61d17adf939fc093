# The address of the upload service, compiled into the program. The default leads nowhere, so that no
# capture goes anywhere by accident.

set(SNAPVANE_FERRYBOX_URL "https://ferrybox.example" CACHE STRING
    "Base URL of the upload service: HTTPS, or HTTP on this machine")

# snapvane_check_ferrybox_url(<url>): stops where the program would refuse the address.
function(snapvane_check_ferrybox_url url)
    set(host "([A-Za-z0-9]([A-Za-z0-9.-]*[A-Za-z0-9])?|\\[[0-9A-Fa-f:.]+\\])")
    set(this_machine "(127\\.0\\.0\\.1|\\[::1\\]|localhost)")
    set(rest "(:[1-9][0-9]*)?(/[A-Za-z0-9._~!$&'()*+,=:@/-]*)?")
    set(is_address NO)
    if(url MATCHES "^(https://${host}|http://${this_machine})${rest}$")
        set(is_address YES)
    endif()
    if(url MATCHES "^[a-z]+://[^/]*:([0-9]+)(/|$)" AND CMAKE_MATCH_1 GREATER 65535)
        set(is_address NO)
    endif()
    if(NOT is_address)
        message(FATAL_ERROR "SNAPVANE_FERRYBOX_URL is \"${url}\". It must be an HTTPS address, or an "
                            "HTTP address on 127.0.0.1, [::1] or localhost, without user name, "
                            "query and fragment.")
    endif()
endfunction()

snapvane_check_ferrybox_url("${SNAPVANE_FERRYBOX_URL}")

# snapvane_ferrybox_url(<target> <url>): a library that says that the service is at that address; every
# program needs one of them.
function(snapvane_ferrybox_url target url)
    snapvane_check_ferrybox_url("${url}")
    add_library(${target} OBJECT ${PROJECT_SOURCE_DIR}/src/upload/FerryboxBaseURLText.cpp)
    snapvane_target(${target})
    target_compile_definitions(${target} PRIVATE SNAPVANE_FERRYBOX_URL="${url}")
endfunction()

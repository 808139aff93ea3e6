# tessel_tables(TARGET): the string tables of localization/ as a source file of the target, so that the program needs no
# files beside it to speak.
function(tessel_tables target)
    file(GLOB tables CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/localization/*.json)
    set(source ${CMAKE_BINARY_DIR}/generated/StringTables.cpp)
    add_custom_command(
        OUTPUT ${source}
        COMMAND ${CMAKE_COMMAND} -DOUTPUT=${source} "-DTABLES=${tables}" -P ${CMAKE_SOURCE_DIR}/cmake/EmbedTables.cmake
        DEPENDS ${tables} ${CMAKE_SOURCE_DIR}/cmake/EmbedTables.cmake
        COMMENT "Embedding the string tables"
        VERBATIM)
    add_custom_target(generated-sources DEPENDS ${source})
    target_sources(${target} PRIVATE ${source})
endfunction()

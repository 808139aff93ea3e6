# Writes OUTPUT, which defines tessel::embeddedStringTables() with the text of every file in TABLES, by language.
set(entries "")
foreach(table IN LISTS TABLES)
    get_filename_component(language ${table} NAME_WE)
    file(READ ${table} text)
    if(text MATCHES "\\)JSON\"")
        message(FATAL_ERROR "${table} holds the characters that end its text in the source.")
    endif()
    string(APPEND entries "        {\"${language}\", R\"JSON(${text})JSON\"},\n")
endforeach()
file(WRITE ${OUTPUT} "#include \"platform/linux/text/EmbeddedStringTables.h\"

namespace tessel {

const std::map<std::string_view, std::string_view>& embeddedStringTables()
{
    static const std::map<std::string_view, std::string_view> tables = {
${entries}    };
    return tables;
}

} // namespace tessel
")

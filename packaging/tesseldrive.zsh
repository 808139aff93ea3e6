#compdef tesseldrive
# Completion of tesseldrive for zsh.

_tesseldrive_shortcut() {
    local -a shortcuts=('search:begin with a search')
    _describe -t shortcuts shortcut shortcuts
    compadd -S '' -- recent:
}

_tesseldrive_log() {
    _alternative 'places:place:((stderr\:"standard error" off\:"no log"))' 'files:file:_files'
}

_arguments -s -S \
    '(- *)'{-h,--help}'[print how it is used]' \
    '(- *)--version[print the version]' \
    '--home=[keep the drive and the records in a folder]:folder:_directories' \
    '--drive=[show a folder as the drive]:folder:_directories' \
    '--console[no window: commands on standard input]' \
    '--json[print screens as JSON]' \
    '--new-instance[open another window, whatever runs already]' \
    '--shortcut=[begin with a shortcut]:shortcut:_tesseldrive_shortcut' \
    '--run-test=[measure a test]:test:' \
    '*--option=[an option of the test]:KEY=VALUE:' \
    '--gallery[show every kind of view]' \
    '--log=[where to log to]:place:_tesseldrive_log' \
    '--log-level=[least level that is logged]:level:(debug info warning error)' \
    '--log-private[show names and places in the log]' \
    '*:document:_files'

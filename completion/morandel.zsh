#compdef morandel
# Made by: morandel completion zsh
_morandel() {
    local -a verbs
    verbs=(
        'eval:evaluate a formula; the word eval can be left out'
        'vars:list the names that a formula needs, with their types'
        'check:list the faults of a formula without evaluating it'
        'calc:compute a file of variables that depend on each other'
        'each:add computed columns to a CSV file'
        'functions:list the functions, or show one with an example'
        'errors:list the errors, or explain one with an example and the way out'
        'help:show this help, or that of a verb'
        'completion:print what a shell needs to complete the command'
    )
    if (( CURRENT == 2 )) && [[ $words[2] != -* ]]; then
        _describe verb verbs
        return
    fi
    case $words[2] in
        eval)
            _arguments -s \
                '--file[evaluate the formula that this file holds]:FILE:_files' \
                '--decimals[round numbers to so many decimals, as preci does, and print them all]:N:' \
                '--plain[never print an exponent]' \
                '--json[print one JSON object a result]' \
                '--quiet[no warnings]' \
                '--strict[a warning is a failure]' \
                '--lang[speak this language; by default Chinese in a Chinese locale, else English]:zh|en:(zh en)' \
                '--color[colours in messages and at the prompt; auto minds NO_COLOR]:auto|always|never:(auto always never)' \
                '--help[show help]' \
                '--version[show the version]' \
                '*:operand:_files'
            ;;
        vars)
            _arguments -s \
                '--json[print one JSON object a result]' \
                '--quiet[no warnings]' \
                '--strict[a warning is a failure]' \
                '--lang[speak this language; by default Chinese in a Chinese locale, else English]:zh|en:(zh en)' \
                '--color[colours in messages and at the prompt; auto minds NO_COLOR]:auto|always|never:(auto always never)' \
                '--help[show help]' \
                '--version[show the version]' \
                '*:operand:_files'
            ;;
        check)
            _arguments -s \
                '--json[print one JSON object a result]' \
                '--quiet[no warnings]' \
                '--strict[a warning is a failure]' \
                '--lang[speak this language; by default Chinese in a Chinese locale, else English]:zh|en:(zh en)' \
                '--color[colours in messages and at the prompt; auto minds NO_COLOR]:auto|always|never:(auto always never)' \
                '--help[show help]' \
                '--version[show the version]' \
                '*:operand:_files'
            ;;
        calc)
            _arguments -s \
                '*--get[print the value of this name alone; as often as wanted]:NAME:' \
                '--encoding[the encoding of the file; utf-8 by default]:utf-8|gbk:(utf-8 gbk)' \
                '--decimals[round numbers to so many decimals, as preci does, and print them all]:N:' \
                '--plain[never print an exponent]' \
                '--json[print one JSON object a result]' \
                '--quiet[no warnings]' \
                '--strict[a warning is a failure]' \
                '--lang[speak this language; by default Chinese in a Chinese locale, else English]:zh|en:(zh en)' \
                '--color[colours in messages and at the prompt; auto minds NO_COLOR]:auto|always|never:(auto always never)' \
                '--help[show help]' \
                '--version[show the version]' \
                '*:operand:_files'
            ;;
        each)
            _arguments -s \
                '*--add[add a column, or replace the one of that name; as often as wanted]:'\''COLUMN = FORMULA'\'':' \
                '*--where[keep only the rows for which the formula is not 0; of several, none may be 0]:FORMULA:' \
                '*--select[write only these columns, in this order]:COLUMN,...:' \
                '--output[write this file; it is whole or not there]:FILE:_files' \
                '--delimiter[between fields, such as '\'';'\'' or tab; a tab by itself for files named .tsv or .tab]:CHARACTER:' \
                '--no-header[the first row is data; columns are called c1, c2 ...]' \
                '--encoding[the encoding of the file; utf-8 by default]:utf-8|gbk:(utf-8 gbk)' \
                '--on-error[where a formula fails\: stop, leave the row out, or leave the field empty; stop by default]:stop|skip|empty:(stop skip empty)' \
                '--empty[an empty field where a number is needed\: an error, 0, or an empty result; error by default]:error|zero|empty:(error zero empty)' \
                '*--text[this column is a text, whatever the formulas make of it]:COLUMN:' \
                '*--number[this column is a number, whatever the formulas make of it]:COLUMN:' \
                '--decimals[round numbers to so many decimals, as preci does, and print them all]:N:' \
                '--plain[never print an exponent]' \
                '--json[print one JSON object a result]' \
                '--quiet[no warnings]' \
                '--strict[a warning is a failure]' \
                '--lang[speak this language; by default Chinese in a Chinese locale, else English]:zh|en:(zh en)' \
                '--color[colours in messages and at the prompt; auto minds NO_COLOR]:auto|always|never:(auto always never)' \
                '--help[show help]' \
                '--version[show the version]' \
                '*:operand:_files'
            ;;
        functions)
            _arguments -s \
                '--json[print one JSON object a result]' \
                '--quiet[no warnings]' \
                '--strict[a warning is a failure]' \
                '--lang[speak this language; by default Chinese in a Chinese locale, else English]:zh|en:(zh en)' \
                '--color[colours in messages and at the prompt; auto minds NO_COLOR]:auto|always|never:(auto always never)' \
                '--help[show help]' \
                '--version[show the version]' \
                ':function:(sin cos tan ctan sqrt arcsin arccos arctan arcctan ln log int deci preci mod strcase strlen strsub strtrim strcat strtrims strmismatch strfind strreplace strdelete strinsert r2s s2r strsubn left right strfindn not if)'
            ;;
        errors)
            _arguments -s \
                '--json[print one JSON object a result]' \
                '--quiet[no warnings]' \
                '--strict[a warning is a failure]' \
                '--lang[speak this language; by default Chinese in a Chinese locale, else English]:zh|en:(zh en)' \
                '--color[colours in messages and at the prompt; auto minds NO_COLOR]:auto|always|never:(auto always never)' \
                '--help[show help]' \
                '--version[show the version]' \
                '*:operand:_files'
            ;;
        help)
            _arguments -s \
                '--man[print the manual page]' \
                '--json[print one JSON object a result]' \
                '--quiet[no warnings]' \
                '--strict[a warning is a failure]' \
                '--lang[speak this language; by default Chinese in a Chinese locale, else English]:zh|en:(zh en)' \
                '--color[colours in messages and at the prompt; auto minds NO_COLOR]:auto|always|never:(auto always never)' \
                '--help[show help]' \
                '--version[show the version]' \
                ':verb:(eval vars check calc each functions errors help completion)'
            ;;
        completion)
            _arguments -s \
                '--json[print one JSON object a result]' \
                '--quiet[no warnings]' \
                '--strict[a warning is a failure]' \
                '--lang[speak this language; by default Chinese in a Chinese locale, else English]:zh|en:(zh en)' \
                '--color[colours in messages and at the prompt; auto minds NO_COLOR]:auto|always|never:(auto always never)' \
                '--help[show help]' \
                '--version[show the version]' \
                ':shell:(bash zsh fish)'
            ;;
    esac
}
_morandel "$@"

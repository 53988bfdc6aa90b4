# Prints what bash completes for some lines, each cut where the cursor is.
eval "$(mmq generate bash)"
complete_line() {
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    _mmq 2>/dev/null
    echo "$*: ${COMPREPLY[*]}"
}
complete_line mmq e
complete_line mmq eval --m
complete_line mmq eval --format ''
complete_line mmq dump t
complete_line mmq eval --model examples/family.json --on P
complete_line mmq eval --model no-such-file --on P
complete_line mmq eval --color = a
complete_line mmq eval --model = '"examples/family.json"' --on = P

# Gives what needs no text of its own one for Doxygen: getters and setters that give and take a
# value as it is, operators, further copying and moving. All else must be described in the header.

function describe() {
    name = declaration
    sub(/\(.*/, "", name)
    isOperator = name ~ /operator/
    sub(/.*[ &*]/, "", name)
    isCopy = declaration ~ ("[ ~]" name "\\((const )?" name "&")
    if (!isDescribed && declaration !~ /\/\/\/</ && (isOperator || isCopy || name ~ /^(get|set|is)[A-Z]/))
        print "/// As the name says, by the rules of the class and of this group."
    printf "%s", lines
    lines = declaration = ""
    isDescribed = 0
}

# Holds the lines of a declaration up to its first parenthesis or its end.
lines == "" && /^ *(\/\/|#|$)/ { isDescribed = /^ *\/\/[\/!]/; print; next }
{
    lines = lines $0 "\n"
    declaration = declaration " " $0
}
/[(;{}:]$|\(/ { describe() }
END { printf "%s", lines }

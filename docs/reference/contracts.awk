# Shows vialto.h to Doxygen: its plain comments become documentation comments. The contract of a
# function keeps its columns; a comment ahead of a record and one behind a field or value describe it.

# A contract opens with "/*" alone and, in the next line, its function; the first is the header's own.
$0 == "/*" { opening = 1; next }

opening {
    opening = 0
    in_contract = 1
    in_brief = 1
    match($0, /^ \* [A-Za-z_0-9]+: /)
    print "/**"
    if (NR == 2) print " * \\file"
    print " * \\brief " substr($0, RLENGTH + 1)
    next
}

in_brief && /^ \*$/ { in_brief = 0; print " *"; print " * \\verbatim"; next }
in_contract && /^ \*\/$/ { in_contract = 0; print " * \\endverbatim"; print; next }
in_contract && in_brief { print; next }
in_contract { sub(/^ \* ?/, ""); print; next }

# Rules between sections are for the reader of the header.
/^\/\* -+$/ { in_rule = 1 }
in_rule { if (/-+ \*\/$/) in_rule = 0; next }

/^\/\*/ { sub(/\/\*/, "/**"); print; next }
/[;,{][^*]*\/\*/ || /[0-9a-zA-Z_] +\/\* / { sub(/\/\*/, "/**<"); print; next }
{ print }

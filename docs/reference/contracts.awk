# Shows vialto.h to Doxygen: its plain comments become documentation comments, its sections groups. The
# contract of a function keeps its columns; a comment ahead of a record and one behind a field or value
# describe it.

# A contract opens with "/*" alone and, in the next line, its function; the first is the header's own.
$0 == "/*" { opening = 1; next }

opening {
    opening = 0
    in_contract = 1
    in_brief = 1
    match($0, /^ \* [A-Za-z_0-9]+: /)
    print "/**"
    if (NR == 2) print " * \\file"
    print " * \\brief " toupper(substr($0, RLENGTH + 1, 1)) substr($0, RLENGTH + 2)
    next
}

in_brief && /^ \*$/ { in_brief = 0; print " *"; print " * \\verbatim"; next }
in_contract && /^ \*\/$/ { in_contract = 0; print "\\endverbatim"; print; next }
in_contract && in_brief { print; next }
in_contract { sub(/^ \* ?/, ""); print; next }

# A section is named between two rules. Its group has the letters of that name.
/^\/\* -+$/ { in_rule = 1; if (in_group) print "/** @} */"; in_group = 1; next }
in_rule && /-+ \*\/$/ { in_rule = 0; next }
in_rule {
    title = substr($0, 4)
    name = tolower(title)
    gsub(/[^a-z0-9]+/, "_", name)
    print "/** \\defgroup " name " " title
    print " * @{ */"
    next
}

# The layout of the records, the last section, ends with the header.
/^#undef VIALTO_LAYOUT/ { print "/** @} */" }

/^\/\*/ { sub(/\/\*/, "/**"); print; next }
/[;,{][^*]*\/\*/ || /[0-9a-zA-Z_] +\/\* / { sub(/\/\*/, "/**<"); print; next }
{ print }

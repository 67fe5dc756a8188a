# Thins out ctest's listing: passed tests become a counter (on a terminal), all else stays, and
# the closing line comes last.
/^ *Start +[0-9]+: / || /^Internal ctest changing/ || /^Test project / { next }
/^ *[0-9]+\/[0-9]+ Test +#[0-9]+: .* Passed / {
    if (terminal) {
        printf "\r%s", $1
        counting = 1
    }
    next
}
/ tests passed, / { closing = $0; next }
/^Total Test time/ { time = $0; next }
!NF { next }
{
    if (counting)
        printf "\r"
    counting = 0
    print
}
END {
    if (counting)
        printf "\r"
    if (time)
        print time
    if (closing)
        print closing
}

#!/usr/bin/perl
# Small faults for scripts/mutate.sh: lists what can be changed in the sources, or makes one such change.
#   mutations.pl list SEED MODULE ...   one change a line, in an order that follows from SEED:
#                                     module, file, line number, kind, the line, the line changed; tab-separated
#   mutations.pl apply FILE NUMBER LINE CHANGED
#                                     replaces that line, or the nearest that reads the same; 3 when there is none
use strict;
use warnings;

my %swapped = map { my ($a, $b) = @$_; ($a => $b, $b => $a) } (
    [qw(team1 team2)], [qw(player1 player2)], [qw(flag1 flag2)], [qw(first second)], [qw(width height)],
    [qw(left right)], [qw(top bottom)], [qw(min max)], [qw(floor ceil)], [qw(true false)], [qw(x y)]);
my %kind_of_word = (min => 'extreme', max => 'extreme', floor => 'extreme', ceil => 'extreme', true => 'truth',
    false => 'truth');
my %operator = (
    '<'  => ['<=', 'bound'], '<=' => ['<',  'bound'],    '>'  => ['>=', 'bound'], '>=' => ['>', 'bound'],
    '==' => ['!=', 'equality'], '!=' => ['==', 'equality'], '&&' => ['||', 'logic'], '||' => ['&&', 'logic'],
    '+'  => ['-',  'sign'],  '-'  => ['+',  'sign'],     '+=' => ['-=', 'sign'],  '-=' => ['+=', 'sign'],
    '*'  => ['/',  'product'], '/' => ['*', 'product']);

my $command = shift // '';
if ($command eq 'list') { list(@ARGV) }
elsif ($command eq 'apply' && @ARGV == 4) { apply(@ARGV) }
else { die "usage: mutations.pl list SEED MODULE ... | apply FILE NUMBER LINE CHANGED\n" }

sub list {
    my ($seed, @modules) = @_;
    my @found;
    for my $module (@modules) {
        for my $file (sort glob("src/$module/*.cpp src/$module/*.h")) {
            push @found, map { ["$module\t$file\t$$_[0]\t$$_[1]\t$$_[2]\t$$_[3]", hash("$seed $file $$_[2] $$_[3]")] }
                changes_of($seed, $file);
        }
    }
    print "$$_[0]\n" for sort { $$a[1] <=> $$b[1] || $$a[0] cmp $$b[0] } @found;
}

# One change for each line that has any.
sub changes_of {
    my ($seed, $file) = @_;
    my @chosen;
    my ($previous, $is_comment, $number) = ('', 0, 0);
    for my $line (lines_of($file)) {
        ++$number;
        my $code = without_texts($line, \$is_comment);
        my @changes = is_changeable($file, $code) ? changes($line, $code, $previous) : ();
        my ($change) = sort { hash("$seed$$a[1]") <=> hash("$seed$$b[1]") || $$a[1] cmp $$b[1] } @changes;
        push @chosen, [$number, $$change[0], $line, $$change[1]] if $change;
        $previous = $code if $code =~ /\S/;
    }
    return @chosen;
}

# The line with its comments and literals of text replaced by as many marks.
sub without_texts {
    my ($line, $is_comment) = @_;
    if ($$is_comment) {
        return '' unless $line =~ s{^(.*?\*/)}{' ' x length $1}e;
        $$is_comment = 0;
    }
    $line =~ s{("(?:\\.|[^"\\])*"|(?<![0-9A-Fa-f])'(?:\\.|[^'\\])*'|//.*|/\*.*?\*/)}{'#' x length $1}ge;
    $$is_comment = 1 if $line =~ s{/\*.*}{};
    return $line;
}

sub is_changeable {
    my ($file, $code) = @_;
    return 0 if $code =~ /^\s*#|^\s*(using|namespace|template|static_assert|concept|friend|extern|enum)\b/;
    return 0 if $code =~ /\b(operator|static_assert|Q_ASSERT|Q_UNREACHABLE)\b|= (default|delete|0);|\.reserve\(/;
    return $file !~ /\.h$/ || $code =~ /\b(return|if|for|while|constexpr)\b| [-+]?= /;
}

sub changes {
    my ($line, $code, $previous) = @_;
    my @changes;
    my $change = sub {
        my ($kind, $from, $length, $text) = @_;
        push @changes, [$kind, substr($line, 0, $from) . $text . substr($line, $from + $length)];
    };
    while ($code =~ /(?<= )(<=?|>=?|==|!=|&&|\|\||[-+]=?|\*|\/)(?= |$)/g) {
        my ($found, $from) = ($1, $-[1]);
        next if $found eq '+' && $code =~ /#|std::string/; # joins texts
        $change->($operator{$found}[1], $from, length $found, $operator{$found}[0]);
    }
    while ($code =~ /(?<![\w'])([a-z]\w*)\b/g) {
        my ($word, $from) = ($1, $-[1]);
        next unless exists $swapped{$word};
        next if $word =~ /^[xy]$/ && $code !~ /^.{$from}[xy]\(\)/ && substr($code, 0, $from) !~ /(\.|->)$/;
        next if $word =~ /^(min|max|floor|ceil)$/ && substr($code, 0, $from) !~ /std::$/;
        $change->($kind_of_word{$word} // 'pair', $from, length $word, $swapped{$word});
    }
    while ($code =~ /(?<![\w.'<])(0|[1-9]\d*|\d+\.\d+)(?![\w.'>])/g) {
        my ($number, $from) = ($1, $-[1]);
        $change->('number', $from, length $number, 
            $number =~ /\./ ? ($number == 0 ? 0.5 : $number * 1.5) : $number < 4 ? $number + 1 : $number * 2);
    }
    while ($code =~ /(?<=[ (])(!)(?=[\w(])/g) { $change->('negation', $-[1], 1, '') }
    return @changes if @changes || hash("$line$previous") % 3 != 0;
    # A statement on a line of its own that declares nothing; there are many, so a third of the lines without any other change.
    if ($previous =~ /[;{})]\s*$|\belse$/ && $code =~ /^(\s*)[\w.:\[\]()>*-]+(\(.*\)| [-+|&]?= .*);\s*#*$/ &&
        $code !~ /^\s*(return|throw|delete|[\w:]+\(\)? ?:)/) {
        $change->('drop', length $1, length($line) - length $1, '{}');
    }
    if ($code =~ /^(\s*)(return|continue);\s*$/) { $change->('drop', length $1, length($line) - length $1, '{}') }
    return @changes;
}

# FNV-1a, and a last mixing, so that the order looks like chance and is the same everywhere.
sub hash {
    my ($text) = @_;
    my $hash = 0x811c9dc5;
    $hash = (($hash ^ ord) * 0x01000193) & 0xffffffff for split //, $text;
    $hash ^= $hash >> 15;
    $hash = ($hash * 0x2c1b3c6d) & 0xffffffff;
    return $hash ^ ($hash >> 13);
}

sub apply {
    my ($file, $number, $line, $changed) = @_;
    my @lines = lines_of($file);
    my ($index) = sort { abs($a + 1 - $number) <=> abs($b + 1 - $number) } grep { $lines[$_] eq $line } 0 .. $#lines;
    exit 3 unless defined $index;
    $lines[$index] = $changed;
    open my $out, '>', $file or die "$file: $!\n";
    print $out map { "$_\n" } @lines;
    close $out or die "$file: $!\n";
}

sub lines_of {
    my ($file) = @_;
    open my $in, '<', $file or die "$file: $!\n";
    chomp(my @lines = <$in>);
    return @lines;
}

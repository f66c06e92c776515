#!/usr/bin/perl
# Holds messages against an OpenAPI description.
#
# Usage: judge.pl FILE, with a JSON list of messages on standard input. A message has "call", "wire"
# (the body as it came), "plain" (what stands inside), "headers", and "status" if it is an answer.
# Prints {"document", "own", "faults"}: the description, what is wrong with it, and a list of faults for
# each message.
use strict;
use warnings;
use JSON::Validator;
use JSON::Validator::Util qw(str2data);
use Mojo::File qw(path);
use Mojo::JSON qw(decode_json encode_json);

# The validator looks up what a description may say by its address, and fetches it where it brings none
# itself; we take Debian's copy, so that nothing is asked of a network.
my ($bounds) = glob '/usr/share/openapi-*/schemas/v3.0/schema.[yj]*'
    or die "judge: /usr/share/openapi-*/schemas/v3.0 is missing: install libjson-validator-perl with what it depends on\n";
my $judge = JSON::Validator->new;
$judge->store->add('https://spec.openapis.org/oas/3.0/schema/2019-04-02' => str2data(path($bounds)->slurp));
my $validator = $judge->schema($ARGV[0])->schema;
my $document = $validator->data;
my @own = map { "$_" } @{ $validator->errors };

# The validator follows references everywhere but at the place of a response and of its headers.
for my $path (keys %{ $document->{paths} }) {
    my $responses = $document->{paths}{$path}{post}{responses};
    for my $status (keys %$responses) {
        my %response = %{ $validator->get(['paths', $path, 'post', 'responses', $status]) };
        $response{headers} = { map { $_ => $validator->get(substr $response{headers}{$_}{'$ref'}, 1) } keys %{ $response{headers} } };
        $responses->{$status} = \%response;
    }
}

my %written = map { (lc $_->{name}) => $_->{name} } values %{ $document->{components}{parameters} };

my %plain;
sub of_plain {
    my ($holder) = @_;
    my $reference = $holder->{content}{'application/json'}{schema}{'x-plain-text'}{'$ref'};
    return $plain{$reference} //= JSON::Validator->new->schema({
        '$schema'  => 'http://json-schema.org/draft-04/schema#',
        components => $document->{components},
        '$ref'     => $reference,
    })->schema;
}

my @faults;
for my $message (@{ decode_json(do { local $/; <STDIN> }) }) {
    my $path = "/$message->{call}";
    my $post = $document->{paths}{$path}{post} or push(@faults, ["$path: not described"]), next;
    # Names of headers have no case, but to the validator.
    my %named = map { my $name = $_; ($written{lc $name} // $name) => $message->{headers}{$name} } keys %{ $message->{headers} };
    my %parts = (
        header => \%named,
        body => sub { { exists => 1, value => $message->{wire}, content_type => 'application/json' } },
    );
    my ($status, $holder) = ($message->{status});
    my @found;
    if ($status) {
        $holder = $post->{responses}{$status} // $post->{responses}{default};
        @found = $validator->validate_response([post => $path, $status], \%parts);
    } else {
        $holder = $validator->get(['paths', $path, 'post', 'requestBody']);
        @found = $validator->validate_request([post => $path], \%parts);
    }
    push @found, of_plain($holder)->validate($message->{plain}) if exists $message->{plain};
    push @faults, [map { "$_" } @found];
}
print encode_json({ document => decode_json(encode_json($document)), own => \@own, faults => \@faults });

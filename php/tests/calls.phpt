--TEST--
The tables of calls, whose form tests/data/calls/README tells
--FILE--
<?php
require __DIR__ . '/shared.inc';

const RULEBOOKS = 'DE-2.6 DE-2.7 AT-6 NL-6 DE-2.8 DE-2.9 DE-3.0 DE-3.1 DE-3.5 DE-3.7';
const TYPES = ['direct debit' => [SEPA_MSGTYPE_DDI], 'credit transfer' => [SEPA_MSGTYPE_CTI],
    'both' => [SEPA_MSGTYPE_DDI, SEPA_MSGTYPE_CTI]];

class Caller
{
    private $rulebook, $type, $message;
    public function __construct(string $rulebook, int $type)
    {
        SEPA::init(SEPA_INIT_RULEBOOK, $rulebook);
        list($this->rulebook, $this->type, $this->message) = [$rulebook, $type, new SEPA($type)];
    }
    public function __invoke(string $name, array $arguments)
    {
        $method = [method_exists($this, $name) ? $this : $this->message, $name];
        $result = call_user_func_array($method, $arguments);
        return $name == 'toXML' || $result === $this->message ?: $result;
    }
    public function header(): bool
    {
        return (bool) $this->message = message_of_type($this->type, $this->rulebook);
    }
    public function add_with(array $properties)
    {
        return $this->message->add(payment($properties, $this->type));
    }
    public function try(array $properties)
    {
        $this->header();
        return $this->add_with($properties);
    }
    public function document(string $name): string
    {
        return elements($this->message->toXML(), $name);
    }
    public function sample(string $name)
    {
        $text = preg_replace('~(?<=<CreDtTm>)[-0-9T:]+(?=Z<)~', '2026-01-02T03:04:05', $this->message->toXML());
        return $text === file_get_contents(__DIR__ . "/$name.xml") ?: $text;
    }
    public function root(): string
    {
        return explode("\n", $this->message->toXML())[1];
    }
    public function dates(string $days): string
    {
        $this->header();
        foreach (explode(' ', $days) as $day) {
            $this->add_with(['date' => sprintf('2027-01-%02d', $day)]);
        }
        preg_match_all('/>2027-01-(\d\d)/', $this->message->toXML(), $found);
        return implode(', ', array_map('intval', $found[1]));
    }
}

foreach (['accounts', 'dates', 'documents', 'header', 'payments', 'schemas', 'strict'] as $table) {
    $count = 0;
    preg_match_all('/^== (.*), (.*)\n((?:(?!== ).*\n)*)/m', file_get_contents(__DIR__ . "/$table.txt"), $sections);
    foreach ($sections[1] as $i => $rulebooks) {
        foreach (explode(' ', $rulebooks == 'all' ? RULEBOOKS : $rulebooks) as $rulebook) {
            foreach (TYPES[$sections[2][$i]] as $type) {
                $count += replay(explode("\n", $sections[3][$i]), new Caller($rulebook, $type));
            }
        }
    }
    echo $count > 20 ? '' : "$table: $count calls\n";
}
?>
--EXPECT--

<?php

namespace Shop;

use RuntimeException;

class Mailer
{
    public function send(string $to, string $subject, string $text): void
    {
        $headers = ['From' => 'shop@example.org', 'Reply-To' => $this->replyTo( 'X-Mailer' => 'shop'];
        if (!mail($to, $subject, $text, $headers)) {
            throw new RuntimeException("Mail to {$to} could not be sent");
        }
    }

    private function replyTo(): string
    {
        return match (date('N')) {
            '6', '7' => 'weekend@example.org',
            default => 'office@example.org',
        };
    }
}

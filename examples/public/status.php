<?php
header('Content-Type: application/json');
$state = ['ok' => true, 'time' => time()];
switch ($_GET['part'] ?? 'all') {
    case 'time':
        echo json_encode($state['time']);
        break;
    default:
        echo json_encode($state);
}
